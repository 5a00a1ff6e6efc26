#include "platform/ForeignClient.h"

#include "support/WaitUntil.h"
#include "support/XSession.h"

#include <xcb/xcb_keysyms.h>

#include <algorithm>

namespace tallowby::test {

ForeignClient::ForeignClient(const QByteArray &wmClass, const QString &display)
    : m_x11((display.isEmpty() ? XSession::adopted().display() : display).toLocal8Bit())
    , m_window(xcb_generate_id(m_x11.handle())) {
    const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS;
    xcb_create_window(m_x11.handle(), XCB_COPY_FROM_PARENT, m_window, m_x11.root(), 0, 0, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    const QByteArray classes = wmClass.toLower() + '\0' + wmClass + '\0';
    xcb_change_property(m_x11.handle(), XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        std::uint32_t(classes.size()), classes.constData());
    m_x11.flush();
    QObject::connect(&m_x11, &XcbConnection::eventReceived, &m_x11,
                     [this](const xcb_generic_event_t &event) { handleEvent(event); });
}

void ForeignClient::showAndFocus() {
    const bool isFocused = waitUntil([this] {
        if (inputFocus() != m_window) {
            // Again each time: a window manager that is starting may miss the request.
            xcb_map_window(m_x11.handle(), m_window);
            xcb_set_input_focus(m_x11.handle(), XCB_INPUT_FOCUS_POINTER_ROOT, m_window, XCB_CURRENT_TIME);
            m_x11.flush();
        }
        return inputFocus() == m_window;
    });
    if (!isFocused) {
        qFatal("The other program's window did not get the focus.");
    }
}

void ForeignClient::paint(QRect area, std::uint32_t color) {
    const std::uint32_t values[] = {color, 1};
    xcb_change_window_attributes(m_x11.handle(), m_window, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    const std::uint32_t geometry[] = {std::uint32_t(area.x()), std::uint32_t(area.y()), std::uint32_t(area.width()),
                                      std::uint32_t(area.height())};
    xcb_configure_window(m_x11.handle(), m_window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         geometry);
    xcb_map_window(m_x11.handle(), m_window);
    (void) inputFocus(); // A round trip: the server has painted.
}

void ForeignClient::setApplicationID(const QByteArray &applicationID) {
    xcb_change_property(m_x11.handle(), XCB_PROP_MODE_REPLACE, m_window, m_x11.atom("_GTK_APPLICATION_ID"),
                        m_x11.atom("UTF8_STRING"), 8, std::uint32_t(applicationID.size()), applicationID.constData());
    m_x11.flush();
}

void ForeignClient::destroyWindow() {
    xcb_destroy_window(m_x11.handle(), m_window);
    (void) inputFocus();
}

int ForeignClient::grabKey(xcb_keycode_t keycode, std::uint16_t modifiers) {
    const auto request = xcb_grab_key_checked(m_x11.handle(), 0, m_x11.root(), modifiers, keycode, XCB_GRAB_MODE_ASYNC,
                                              XCB_GRAB_MODE_ASYNC);
    const XcbReply<xcb_generic_error_t> error(xcb_request_check(m_x11.handle(), request));
    return error ? error->error_code : 0;
}

void ForeignClient::ungrabKey(xcb_keycode_t keycode, std::uint16_t modifiers) {
    xcb_ungrab_key(m_x11.handle(), keycode, m_x11.root(), modifiers);
    (void) inputFocus();
}

xcb_window_t ForeignClient::inputFocus() {
    return xcbReply<xcb_get_input_focus_reply>(m_x11.handle(), xcb_get_input_focus(m_x11.handle()))->focus;
}

bool ForeignClient::hasState(xcb_window_t window, const QByteArray &state) {
    const auto states = m_x11.items(window, "_NET_WM_STATE", XCB_ATOM_ATOM, 32);
    return std::ranges::find(states, m_x11.atom(state)) != states.end();
}

void ForeignClient::handleEvent(const xcb_generic_event_t &event) {
    if ((event.response_type & ~0x80) != XCB_KEY_PRESS) {
        return;
    }
    const auto &press = reinterpret_cast<const xcb_key_press_event_t &>(event);
    xcb_key_symbols_t *symbols = xcb_key_symbols_alloc(m_x11.handle());
    const xcb_keysym_t keySymbol = xcb_key_symbols_get_keysym(symbols, press.detail, 0);
    xcb_key_symbols_free(symbols);
    if (keySymbol < 0x80) {
        m_typed += char(keySymbol);
    }
}

} // namespace tallowby::test
