#include "e2e/OtherApplication.h"

#include <X11/keysym.h>

#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>
#include <xcb/xcb_icccm.h>
#include <xcb/xcb_keysyms.h>

namespace tallowby::test {

namespace {

/// Of a request that stands for what the user does, not the program.
constexpr std::uint32_t kSourcePager = 2;

xcb_screen_t *screenOf(xcb_connection_t *connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

xcb_keysym_t keySymbolOf(xcb_connection_t *connection, xcb_keycode_t keycode) {
    xcb_key_symbols_t *symbols = xcb_key_symbols_alloc(connection);
    const xcb_keysym_t keySymbol = xcb_key_symbols_get_keysym(symbols, keycode, 0);
    xcb_key_symbols_free(symbols);
    return keySymbol;
}

xcb_keycode_t keycodeOf(xcb_connection_t *connection, xcb_keysym_t keySymbol) {
    xcb_key_symbols_t *symbols = xcb_key_symbols_alloc(connection);
    const std::unique_ptr<xcb_keycode_t, decltype(&std::free)> keycodes(xcb_key_symbols_get_keycode(symbols, keySymbol),
                                                                        &std::free);
    xcb_key_symbols_free(symbols);
    return keycodes ? keycodes.get()[0] : xcb_keycode_t(0);
}

} // namespace

OtherApplication::OtherApplication(const QString &display, const QByteArray &name)
    : m_connection(xcb_connect(display.toLocal8Bit().constData(), nullptr))
    , m_window(xcb_generate_id(m_connection)) {
    xcb_screen_t *screen = screenOf(m_connection);
    const std::uint32_t values[] = {screen->white_pixel, XCB_EVENT_MASK_KEY_PRESS};
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 60, 60, 500, 300, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK,
                      values);
    xcb_icccm_set_wm_name(m_connection, m_window, XCB_ATOM_STRING, 8, std::uint32_t(name.size()), name.constData());
    // Instance and class, each ended by a zero.
    const QByteArray wmClass = name.toLower() + '\0' + name + '\0';
    xcb_icccm_set_wm_class(m_connection, m_window, std::uint32_t(wmClass.size()), wmClass.constData());
    xcb_icccm_wm_hints_t hints{};
    xcb_icccm_wm_hints_set_input(&hints, 1);
    xcb_icccm_set_wm_hints(m_connection, m_window, &hints);
    xcb_map_window(m_connection, m_window);
    xcb_flush(m_connection);
}

OtherApplication::~OtherApplication() {
    xcb_disconnect(m_connection);
}

bool OtherApplication::hasFocus() {
    const std::unique_ptr<xcb_get_input_focus_reply_t, decltype(&std::free)> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr), &std::free);
    return reply && reply->focus == m_window;
}

QString OtherApplication::typed() {
    // A round trip: what the server had sent by now has arrived.
    std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    while (const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event{xcb_poll_for_event(m_connection),
                                                                                  &std::free}) {
        if ((event->response_type & 0x7f) == XCB_KEY_PRESS) {
            const auto *press = reinterpret_cast<const xcb_key_press_event_t *>(event.get());
            const xcb_keysym_t keySymbol = keySymbolOf(m_connection, press->detail);
            if (keySymbol >= XK_space && keySymbol <= XK_asciitilde) {
                m_typed += QChar(char16_t(keySymbol));
            }
        }
    }
    return m_typed;
}

void OtherApplication::takeKeyboard() {
    const std::string_view hint = "_NET_ACTIVE_WINDOW";
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(m_connection, xcb_intern_atom(m_connection, 0, std::uint16_t(hint.size()), hint.data()),
                              nullptr),
        &std::free);
    const xcb_window_t root = screenOf(m_connection)->root;
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = m_window;
    request.type = atom ? atom->atom : xcb_atom_t(XCB_ATOM_NONE);
    request.data.data32[0] = kSourcePager;
    xcb_send_event(m_connection, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&request));
    xcb_flush(m_connection);
}

void OtherApplication::grabAltSpace() {
    xcb_grab_key(m_connection, 1, screenOf(m_connection)->root, XCB_MOD_MASK_1, keycodeOf(m_connection, XK_space),
                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

} // namespace tallowby::test
