#include "platform/linux/x11/X11Presentation.h"

#include "platform/linux/x11/XcbConnection.h"

#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

constexpr QPoint kUnseenPlace{-16, -16};
constexpr std::uint32_t kAllDesktops = 0xffffffff;
constexpr std::uint32_t kStateRemove = 0;
constexpr std::uint32_t kStateAdd = 1;
constexpr std::uint32_t kSourceApplication = 1;
constexpr std::uint32_t kMaximumStates = 64;
/// Told when a window is mapped or unmapped, and when it can be seen.
constexpr std::uint32_t kWindowEvents = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_VISIBILITY_CHANGE;

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
    // What the window manager has granted must not be taken once more: by then the user may have gone elsewhere.
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow *window) {
        if (window) {
            m_awaited = XCB_WINDOW_NONE;
        }
    });
}

void X11Presentation::setPresentationOptions(PresentationOptions options) {
    const bool covered = coversDocks();
    m_options = options;
    if (coversDocks() == covered || !m_panel || !m_panel->handle() || !m_x11.isValid()) {
        return;
    }
    if (m_panel->isVisible()) {
        finishQtRequests();
        requestState(m_x11.atom("_NET_WM_STATE_FULLSCREEN"), coversDocks() ? kStateAdd : kStateRemove);
    } else {
        writePanelStates();
    }
}

void X11Presentation::preparePanel(QWindow &window) {
    m_panel = &window;
    if (!m_x11.isValid() || window.isVisible()) {
        return;
    }
    // Qt remembers the state in which the window was last seen and would bring it back.
    window.setWindowStates(window.windowStates() & ~Qt::WindowStates(Qt::WindowFullScreen));
    m_panelWindow = xcb_window_t(window.winId());
    finishQtRequests();
    xcb_change_window_attributes(m_x11.handle(), m_panelWindow, XCB_CW_EVENT_MASK, &kWindowEvents);
    writeActivationToken();
    writePanelStates();
}

void X11Presentation::writeActivationToken() {
    const QByteArray token = std::exchange(m_activationToken, {});
    if (token.isEmpty()) {
        xcb_delete_property(m_x11.handle(), m_panelWindow, m_x11.atom("_NET_STARTUP_ID"));
        return;
    }
    xcb_change_property(m_x11.handle(), XCB_PROP_MODE_REPLACE, m_panelWindow, m_x11.atom("_NET_STARTUP_ID"),
                        m_x11.atom("UTF8_STRING"), 8, std::uint32_t(token.size()), token.constData());
}

bool X11Presentation::showUnseen(QWindow &window) {
    if (!m_x11.isValid() || window.isVisible()) {
        return false;
    }
    // Outside the root window, and none of the window manager's business.
    window.setFlag(Qt::BypassWindowManagerHint);
    window.setGeometry(QRect(kUnseenPlace, QSize(1, 1)));
    window.show();
    return true;
}

void X11Presentation::hideUnseen(QWindow &window) {
    window.hide();
    window.setFlag(Qt::BypassWindowManagerHint, false);
}

void X11Presentation::activateIgnoringOtherApps(QWindow &window) {
    if (!m_x11.isValid() || !window.isVisible()) {
        return;
    }
    window.raise();
    finishQtRequests();
    const auto id = xcb_window_t(window.winId());
    xcb_change_window_attributes(m_x11.handle(), id, XCB_CW_EVENT_MASK, &kWindowEvents);
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

std::vector<xcb_atom_t> X11Presentation::panelStates() {
    std::vector<xcb_atom_t> states;
    for (const char *state :
         {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}) {
        states.push_back(m_x11.atom(state));
    }
    if (coversDocks()) {
        states.push_back(m_x11.atom("_NET_WM_STATE_FULLSCREEN"));
    }
    return states;
}

void X11Presentation::writePanelStates() {
    // When the window is shown, Qt keeps what stands in the property and adds what it sets itself.
    const auto states = panelStates();
    xcb_change_property(m_x11.handle(), XCB_PROP_MODE_REPLACE, m_panelWindow, m_x11.atom("_NET_WM_STATE"),
                        XCB_ATOM_ATOM, 32, std::uint32_t(states.size()), states.data());
    const auto desktop =
        xcb_change_property_checked(m_x11.handle(), XCB_PROP_MODE_REPLACE, m_panelWindow, m_x11.atom("_NET_WM_DESKTOP"),
                                    XCB_ATOM_CARDINAL, 32, 1, &kAllDesktops);
    // Waits, so that Qt's request to show the window comes after this.
    std::free(xcb_request_check(m_x11.handle(), desktop));
}

void X11Presentation::completePanelStates() {
    // A window manager takes the states off a window that is hidden, in its own time: when the next showing follows at
    // once, it takes off the new ones.
    const auto present = m_x11.items(m_panelWindow, "_NET_WM_STATE", XCB_ATOM_ATOM, kMaximumStates);
    for (const xcb_atom_t state : panelStates()) {
        if (std::ranges::find(present, state) == present.end()) {
            requestState(state, kStateAdd);
        }
    }
    if (m_x11.items(m_panelWindow, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, 1) != std::vector{kAllDesktops}) {
        m_windowManager.request(m_panelWindow, "_NET_WM_DESKTOP", {kAllDesktops, kSourceApplication, 0, 0, 0});
    }
}

void X11Presentation::requestState(xcb_atom_t state, std::uint32_t action) const {
    m_windowManager.request(m_panelWindow, "_NET_WM_STATE", {action, state, XCB_ATOM_NONE, kSourceApplication, 0});
}

void X11Presentation::handleEvent(const xcb_generic_event_t &event) {
    switch (event.response_type & ~0x80) {
    case XCB_MAP_NOTIFY:
        if (reinterpret_cast<const xcb_map_notify_event_t &>(event).window == m_panelWindow) {
            completePanelStates();
        }
        break;
    case XCB_UNMAP_NOTIFY:
        if (reinterpret_cast<const xcb_unmap_notify_event_t &>(event).window == m_awaited) {
            m_awaited = XCB_WINDOW_NONE;
        }
        break;
    case XCB_VISIBILITY_NOTIFY:
        if (reinterpret_cast<const xcb_visibility_notify_event_t &>(event).window == m_awaited) {
            m_windowManager.setInputFocus(std::exchange(m_awaited, XCB_WINDOW_NONE));
        }
        break;
    default:
        break;
    }
}

} // namespace tallowby
