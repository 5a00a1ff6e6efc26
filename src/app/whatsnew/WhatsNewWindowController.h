#pragma once

#include "app/shell/WindowController.h"
#include "app/whatsnew/ReleaseNotes.h"

#include <functional>

namespace tallowby {

/// The window that shows what came with each version, the newest first. Main thread only.
class WhatsNewWindowController : public WindowController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QList<tallowby::ReleaseNotes> releases READ releases CONSTANT)

public:
    /// `dismissed` is called when the user is done with it.
    WhatsNewWindowController(const WindowServices &window, std::function<void()> dismissed)
        : WindowController(window, QStringLiteral("WhatsNewWindow"))
        , m_dismissed(std::move(dismissed)) {}

    [[nodiscard]] const QList<ReleaseNotes> &releases() const { return m_releases; }
    Q_INVOKABLE void dismiss() { m_dismissed(); }

private:
    const std::function<void()> m_dismissed;
    const QList<ReleaseNotes> m_releases = releaseNotes();
};

} // namespace tallowby
