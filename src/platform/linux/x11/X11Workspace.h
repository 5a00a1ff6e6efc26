#pragma once

#include "platform/desktop/Workspace.h"
#include "platform/linux/x11/WindowManager.h"

namespace tallowby {

class XcbConnection;

/// Applications as the windows of the X session tell of them. An application's bundle identifier is the
/// `_GTK_APPLICATION_ID` of its window, else the class part of its WM_CLASS. Without a window manager nobody announces
/// activations, and the frontmost application is that with the input focus.
class X11Workspace final : public Workspace {
    Q_OBJECT

public:
    explicit X11Workspace(XcbConnection &x11);

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override;
    [[nodiscard]] QString mainBundleIdentifier() const override;
    void activate(const RunningApplication &application) override;

private:
    void handleEvent(const xcb_generic_event_t &event);
    [[nodiscard]] QString bundleIdentifier(xcb_window_t window) const;

    XcbConnection &m_x11;
    WindowManager m_windowManager;
    xcb_window_t m_announced = XCB_WINDOW_NONE;
};

} // namespace tallowby
