#pragma once

#include <QObject>
#include <QString>

#include <optional>

namespace tallowby {

/// An application as the desktop knows it, and the window that stands for it.
struct RunningApplication {
    /// Empty when the application names none.
    QString bundleIdentifier;
    /// The platform's number of the window; 0 for none.
    quint64 window = 0;
};

/// Which application has the desktop's attention. Main thread only.
class Workspace : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The application whose window is active now.
    [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() const = 0;
    /// The bundle identifier under which this program's own windows appear.
    [[nodiscard]] virtual QString mainBundleIdentifier() const = 0;
    /// Brings an application's window to the front and gives it the keyboard; a window that is gone is ignored.
    virtual void activate(const RunningApplication &application) = 0;

Q_SIGNALS:
    /// An application's window became the active one, this program's own included.
    void applicationActivated(const tallowby::RunningApplication &application);
};

} // namespace tallowby
