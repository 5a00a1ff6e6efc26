#pragma once

#include <QObject>
#include <QQmlEngine>

#include <memory>

class QQuickWindow;

namespace tallowby {

class MainMenu;
class Presentation;

/// What the program's windows stand on; all of it outlives them.
struct WindowServices {
    QQmlEngine &qml;
    Presentation &presentation;
    MainMenu &mainMenu;
};

/// Owns one of the program's windows, which is made at its first showing and kept. The QML of the window gets this
/// object as `controller` and the main menu as `mainMenu`. Main thread only.
class WindowController : public QObject {
    Q_OBJECT

public:
    ~WindowController() override;

    /// Opens the window in the middle of its display, or brings it to the front; it gets the keyboard either way.
    void show();
    /// Null until it is shown for the first time.
    [[nodiscard]] QQuickWindow *window() const { return m_window.get(); }

protected:
    /// `view` is the name of the window's QML file.
    WindowController(const WindowServices &services, const QString &view);

    /// Called before each showing of a window that is not open.
    virtual void prepareToShow() {}

private:
    [[nodiscard]] bool makeWindow();

    const WindowServices m_services;
    const QString m_view;
    std::unique_ptr<QQuickWindow> m_window;
};

} // namespace tallowby
