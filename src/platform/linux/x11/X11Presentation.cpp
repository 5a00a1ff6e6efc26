#include "platform/linux/x11/X11Presentation.h"

#include "platform/linux/x11/XcbConnection.h"

#include <QGuiApplication>

#include <utility>

namespace tallowby {

namespace {

constexpr std::uint32_t kAllDesktops = 0xffffffff;
constexpr std::uint32_t kStateRemove = 0;
constexpr std::uint32_t kStateAdd = 1;
constexpr std::uint32_t kSourceApplication = 1;

/// Qt's own connection creates, maps and unmaps the program's windows. Empty when Qt does not run on X11.
xcb_connection_t *qtConnection() {
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

/// Requests on two connections have no order of their own: has the server take all that Qt has asked for.
void finishQtRequests() {
    (void) xcbReply<xcb_get_input_focus_reply>(qtConnection(), xcb_get_input_focus(qtConnection()));
}

} // namespace

X11Presentation::X11Presentation(XcbConnection &x11)
    : m_x11(x11)
    , m_windowManager(x11) {
    connect(&m_x11, &XcbConnection::eventReceived, this, &X11Presentation::handleEvent);
}

void X11Presentation::setPresentationOptions(PresentationOptions options) {
    const bool covered = coversDocks();
    m_options = options;
    if (coversDocks() == covered || !m_panel || !m_panel->handle() || !m_x11.isValid()) {
        return;
    }
    if (!m_panel->isVisible()) {
        writePanelStates(*m_panel);
        return;
    }
    finishQtRequests();
    m_windowManager.request(xcb_window_t(m_panel->winId()), "_NET_WM_STATE",
                            {coversDocks() ? kStateAdd : kStateRemove, m_x11.atom("_NET_WM_STATE_FULLSCREEN"),
                             XCB_ATOM_NONE, kSourceApplication, 0});
}

void X11Presentation::preparePanel(QWindow &window) {
    m_panel = &window;
    if (!m_x11.isValid() || window.isVisible()) {
        return;
    }
    // Qt remembers the state in which the window was last seen and would bring it back.
    window.setWindowStates(window.windowStates() & ~Qt::WindowStates(Qt::WindowFullScreen));
    writePanelStates(window);
}

void X11Presentation::activateIgnoringOtherApps(QWindow &window) {
    if (!m_x11.isValid() || !window.isVisible()) {
        return;
    }
    window.raise();
    finishQtRequests();
    const auto id = xcb_window_t(window.winId());
    const std::uint32_t viewableOrGone = XCB_EVENT_MASK_VISIBILITY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_x11.handle(), id, XCB_CW_EVENT_MASK, &viewableOrGone);
    m_windowManager.activate(id);
    // A window manager may still decline. The server does not, once the window can be seen.
    const auto attributes =
        xcbReply<xcb_get_window_attributes_reply>(m_x11.handle(), xcb_get_window_attributes(m_x11.handle(), id));
    if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE) {
        m_awaited = XCB_WINDOW_NONE;
        m_windowManager.setInputFocus(id);
    } else {
        m_awaited = id;
    }
}

bool X11Presentation::coversDocks() const {
    return (m_options & (kAutoHideDock | kAutoHideMenuBar)) != 0;
}

void X11Presentation::writePanelStates(QWindow &window) {
    // When the window is shown, Qt keeps what stands in the property and adds what it sets itself.
    std::vector<xcb_atom_t> states;
    for (const char *state :
         {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}) {
        states.push_back(m_x11.atom(state));
    }
    if (coversDocks()) {
        states.push_back(m_x11.atom("_NET_WM_STATE_FULLSCREEN"));
    }
    const auto id = xcb_window_t(window.winId());
    finishQtRequests();
    xcb_change_property(m_x11.handle(), XCB_PROP_MODE_REPLACE, id, m_x11.atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32,
                        std::uint32_t(states.size()), states.data());
    const auto desktop =
        xcb_change_property_checked(m_x11.handle(), XCB_PROP_MODE_REPLACE, id, m_x11.atom("_NET_WM_DESKTOP"),
                                    XCB_ATOM_CARDINAL, 32, 1, &kAllDesktops);
    // Waits, so that Qt's request to show the window comes after this.
    std::free(xcb_request_check(m_x11.handle(), desktop));
}

void X11Presentation::handleEvent(const xcb_generic_event_t &event) {
    const std::uint8_t type = event.response_type & ~0x80;
    if (m_awaited == XCB_WINDOW_NONE) {
        return;
    }
    if (type == XCB_VISIBILITY_NOTIFY &&
        reinterpret_cast<const xcb_visibility_notify_event_t &>(event).window == m_awaited) {
        m_windowManager.setInputFocus(std::exchange(m_awaited, XCB_WINDOW_NONE));
    } else if (type == XCB_UNMAP_NOTIFY &&
               reinterpret_cast<const xcb_unmap_notify_event_t &>(event).window == m_awaited) {
        m_awaited = XCB_WINDOW_NONE;
    }
}

} // namespace tallowby
