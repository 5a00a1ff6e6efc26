#include "platform/linux/x11/WindowManager.h"

#include "platform/linux/x11/XcbConnection.h"

#include <algorithm>

namespace tallowby {

namespace {

constexpr std::uint32_t kMaximumHints = 1024;
constexpr int kMaximumDepth = 32;
/// Pagers and task bars act for the user; an application's own requests may be refused.
constexpr std::uint32_t kSourcePager = 2;

} // namespace

bool WindowManager::supports(const QByteArray &hint) const {
    constexpr auto kCheck = "_NET_SUPPORTING_WM_CHECK";
    // A window manager that crashed leaves the root's property behind, but not the window that it names.
    const auto onRoot = m_x11.items(m_x11.root(), kCheck, XCB_ATOM_WINDOW, 1);
    if (onRoot.empty() || m_x11.items(onRoot.front(), kCheck, XCB_ATOM_WINDOW, 1) != onRoot) {
        return false;
    }
    const auto hints = m_x11.items(m_x11.root(), "_NET_SUPPORTED", XCB_ATOM_ATOM, kMaximumHints);
    return std::ranges::find(hints, m_x11.atom(hint)) != hints.end();
}

xcb_window_t WindowManager::activeWindow() const {
    if (!supports("_NET_ACTIVE_WINDOW")) {
        return focusedApplicationWindow();
    }
    const auto active = m_x11.items(m_x11.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, 1);
    return active.empty() ? xcb_window_t(XCB_WINDOW_NONE) : active.front();
}

void WindowManager::request(xcb_window_t window, const QByteArray &message,
                            const std::array<std::uint32_t, 5> &data) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = m_x11.atom(message);
    std::ranges::copy(data, event.data.data32);
    xcb_send_event(m_x11.handle(), 0, m_x11.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&event));
    m_x11.flush();
}

void WindowManager::activate(xcb_window_t window) const {
    if (supports("_NET_ACTIVE_WINDOW")) {
        request(window, "_NET_ACTIVE_WINDOW", {kSourcePager, m_x11.serverTime(), XCB_WINDOW_NONE, 0, 0});
        return;
    }
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(m_x11.handle(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    setInputFocus(window);
}

void WindowManager::setInputFocus(xcb_window_t window) const {
    xcb_set_input_focus(m_x11.handle(), XCB_INPUT_FOCUS_POINTER_ROOT, window, m_x11.serverTime());
    m_x11.flush();
}

xcb_window_t WindowManager::focusedApplicationWindow() const {
    const auto focus = xcbReply<xcb_get_input_focus_reply>(m_x11.handle(), xcb_get_input_focus(m_x11.handle()));
    xcb_window_t window = focus ? focus->focus : xcb_window_t(XCB_WINDOW_NONE);
    for (int depth = 0; depth < kMaximumDepth; ++depth) {
        if (window == XCB_WINDOW_NONE || window == XCB_INPUT_FOCUS_POINTER_ROOT || window == m_x11.root()) {
            break;
        }
        if (!m_x11.bytes(window, "WM_CLASS", 4).isEmpty()) {
            return window;
        }
        const auto tree = xcbReply<xcb_query_tree_reply>(m_x11.handle(), xcb_query_tree(m_x11.handle(), window));
        window = tree ? tree->parent : xcb_window_t(XCB_WINDOW_NONE);
    }
    return XCB_WINDOW_NONE;
}

} // namespace tallowby
