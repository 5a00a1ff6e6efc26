#include "support/XKeyboard.h"

#include <X11/keysym.h>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <bit>
#include <cstdlib>

namespace tallowby::test {

namespace {

constexpr int kModifierCount = 8;

} // namespace

XKeyboard::XKeyboard(const QString &display)
    : m_connection(xcb_connect(display.toLocal8Bit().constData(), nullptr)) {}

XKeyboard::~XKeyboard() {
    if (!m_originalModifierMap.empty()) {
        writeModifierMap(m_originalModifierMap);
    }
    xcb_disconnect(m_connection);
}

void XKeyboard::press(std::uint32_t keySymbol) {
    fake(XCB_KEY_PRESS, find(keySymbol).keycode);
    synchronize();
}

void XKeyboard::release(std::uint32_t keySymbol) {
    fake(XCB_KEY_RELEASE, find(keySymbol).keycode);
    synchronize();
}

void XKeyboard::tap(std::uint32_t keySymbol) {
    press(keySymbol);
    release(keySymbol);
}

void XKeyboard::chord(std::uint32_t modifier, std::uint32_t keySymbol) {
    press(modifier);
    tap(keySymbol);
    release(modifier);
}

void XKeyboard::type(QStringView text) {
    for (const QChar character : text) {
        const std::uint32_t keySymbol = character == u'\n' ? std::uint32_t(XK_Return) : character.unicode();
        const Place place = find(keySymbol);
        if (place.needsShift) {
            press(XK_Shift_L);
        }
        fake(XCB_KEY_PRESS, place.keycode);
        fake(XCB_KEY_RELEASE, place.keycode);
        if (place.needsShift) {
            release(XK_Shift_L);
        }
    }
    synchronize();
}

void XKeyboard::setModifierKeys(std::uint32_t modifierMask, const std::vector<std::uint32_t> &keySymbols) {
    auto *mapping = xcb_get_modifier_mapping_reply(m_connection, xcb_get_modifier_mapping(m_connection), nullptr);
    const xcb_keycode_t *first = xcb_get_modifier_mapping_keycodes(mapping);
    std::vector<std::uint8_t> keycodes(first, first + kModifierCount * mapping->keycodes_per_modifier);
    if (m_originalModifierMap.empty()) {
        m_originalModifierMap = keycodes;
    }
    auto row = keycodes.begin() + std::countr_zero(modifierMask) * mapping->keycodes_per_modifier;
    std::fill_n(row, mapping->keycodes_per_modifier, xcb_keycode_t(0));
    for (const std::uint32_t keySymbol : keySymbols) {
        *row++ = find(keySymbol).keycode;
    }
    writeModifierMap(keycodes);
    std::free(mapping);
}

void XKeyboard::writeModifierMap(const std::vector<std::uint8_t> &keycodes) {
    const auto width = std::uint8_t(keycodes.size() / kModifierCount);
    auto *reply = xcb_set_modifier_mapping_reply(
        m_connection, xcb_set_modifier_mapping(m_connection, width, keycodes.data()), nullptr);
    if (!reply || reply->status != XCB_MAPPING_STATUS_SUCCESS) {
        qFatal("The session's keyboard did not take the new modifier map.");
    }
    std::free(reply);
}

XKeyboard::Place XKeyboard::find(std::uint32_t keySymbol) const {
    // Looked up anew each time: a test may change the mapping.
    xcb_key_symbols_t *symbols = xcb_key_symbols_alloc(m_connection);
    xcb_keycode_t *keycodes = xcb_key_symbols_get_keycode(symbols, keySymbol);
    Place place;
    if (keycodes) {
        place = {keycodes[0], xcb_key_symbols_get_keysym(symbols, keycodes[0], 0) != keySymbol};
    }
    std::free(keycodes);
    xcb_key_symbols_free(symbols);
    if (place.keycode == 0) {
        qFatal("No key of the session's keyboard gives the key symbol 0x%x.", keySymbol);
    }
    return place;
}

void XKeyboard::fake(std::uint8_t eventType, std::uint8_t keycode) {
    xcb_test_fake_input(m_connection, eventType, keycode, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

void XKeyboard::synchronize() {
    std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

} // namespace tallowby::test
