#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QRect>

#include <string>

namespace tallowby::test {

/// Another program on the same X session, with one window.
class ForeignClient {
public:
    /// `wmClass` is the class part of WM_CLASS. Without a `display`, on that of this process.
    explicit ForeignClient(const QByteArray &wmClass = "Terminal", const QString &display = {});

    [[nodiscard]] XcbConnection &x11() { return m_x11; }
    [[nodiscard]] xcb_window_t window() const { return m_window; }
    /// The keys that were pressed in its window, as the letters of a US keyboard.
    [[nodiscard]] const std::string &typed() const { return m_typed; }

    /// Shows the window and waits until it has the input focus.
    void showAndFocus();
    /// Shows the window filled with `color`, at `area` of the screen and out of the window manager's hands.
    void paint(QRect area, std::uint32_t color);
    void setApplicationID(const QByteArray &applicationID);
    void destroyWindow();

    /// The X error code, 0 for success.
    [[nodiscard]] int grabKey(xcb_keycode_t keycode, std::uint16_t modifiers);
    void ungrabKey(xcb_keycode_t keycode, std::uint16_t modifiers);

    [[nodiscard]] xcb_window_t inputFocus();
    /// What the server has for a window's `_NET_WM_STATE`, by name.
    [[nodiscard]] bool hasState(xcb_window_t window, const QByteArray &state);

private:
    void handleEvent(const xcb_generic_event_t &event);

    XcbConnection m_x11;
    xcb_window_t m_window;
    std::string m_typed;
};

} // namespace tallowby::test
