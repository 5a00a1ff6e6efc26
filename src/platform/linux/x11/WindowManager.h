#pragma once

#include <xcb/xcb.h>

#include <QByteArray>

#include <array>

namespace tallowby {

class XcbConnection;

/// The window manager of the X session, through the Extended Window Manager Hints of freedesktop.org. It may be absent,
/// and come or go, so nothing is remembered. Main thread only.
class WindowManager {
public:
    explicit WindowManager(XcbConnection &x11)
        : m_x11(x11) {}

    /// Whether one runs that knows `hint`.
    [[nodiscard]] bool supports(const QByteArray &hint) const;
    /// The window that has the user's attention; XCB_WINDOW_NONE for none. Without a window manager, the one with the
    /// input focus.
    [[nodiscard]] xcb_window_t activeWindow() const;
    /// Asks it for something about `window`.
    void request(xcb_window_t window, const QByteArray &message, const std::array<std::uint32_t, 5> &data) const;

    /// Brings `window` to the front and gives it the keyboard, in the user's name, so that protection against windows
    /// that take the focus by themselves does not apply. Without a window manager the server is told directly.
    void activate(xcb_window_t window) const;
    /// Gives `window` the input focus without asking anyone; nothing happens while it is not viewable.
    void setInputFocus(xcb_window_t window) const;

    /// The window with the input focus, or the nearest one around it that an application declares as its own.
    [[nodiscard]] xcb_window_t focusedApplicationWindow() const;

private:
    XcbConnection &m_x11;
};

} // namespace tallowby
