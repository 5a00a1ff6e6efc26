#include "platform/linux/x11/ModifierMap.h"

#include "platform/VirtualKey.h"
#include "platform/linux/x11/XcbConnection.h"

#include <X11/keysym.h>
#include <xcb/xcb_keysyms.h>

namespace tallowby {

namespace {

constexpr int kModifierCount = 8;
constexpr std::uint16_t kModifierBits = 0xff;
/// Columns of the keyboard map that a modifier's key symbol may stand in: two groups of two levels.
constexpr int kColumns = 4;

} // namespace

ModifierMap::ModifierMap(XcbConnection &x11)
    : m_locks(XCB_MOD_MASK_LOCK) {
    const auto mapping = xcbReply<xcb_get_modifier_mapping_reply>(x11.handle(), xcb_get_modifier_mapping(x11.handle()));
    if (!mapping) {
        return;
    }
    const std::unique_ptr<xcb_key_symbols_t, decltype(&xcb_key_symbols_free)> symbols(
        xcb_key_symbols_alloc(x11.handle()), &xcb_key_symbols_free);
    const xcb_keycode_t *keycodes = xcb_get_modifier_mapping_keycodes(mapping.get());
    for (int place = 0; place < kModifierCount * mapping->keycodes_per_modifier; ++place) {
        const auto bit = std::uint16_t(1U << (place / mapping->keycodes_per_modifier));
        for (int column = 0; keycodes[place] != 0 && column < kColumns; ++column) {
            switch (xcb_key_symbols_get_keysym(symbols.get(), keycodes[place], column)) {
            case XK_Alt_L:
            case XK_Alt_R:
                m_alt = m_alt == 0 ? bit : m_alt;
                break;
            case XK_Super_L:
            case XK_Super_R:
                m_super = m_super == 0 ? bit : m_super;
                break;
            case XK_Caps_Lock:
            case XK_Num_Lock:
            case XK_Scroll_Lock:
                m_locks |= bit;
                break;
            default:
                break;
            }
        }
    }
}

std::optional<std::uint16_t> ModifierMap::fromCarbon(std::uint32_t carbonMask) const {
    std::uint16_t modifiers = 0;
    const auto add = [&](std::uint32_t carbonBit, std::uint16_t bits) {
        if ((carbonMask & carbonBit) == 0) {
            return true;
        }
        modifiers |= bits;
        return bits != 0;
    };
    const bool hasAll = add(carbon::shiftKey, XCB_MOD_MASK_SHIFT) && add(carbon::controlKey, XCB_MOD_MASK_CONTROL) &&
                        add(carbon::optionKey, m_alt) && add(carbon::cmdKey, m_super);
    return hasAll ? std::optional(modifiers) : std::nullopt;
}

std::vector<std::uint16_t> ModifierMap::withLocks(std::uint16_t modifiers) const {
    const auto locks = std::uint16_t(m_locks & ~modifiers);
    std::vector<std::uint16_t> combinations;
    // Walks through all subsets of the bits, the empty one last.
    std::uint16_t subset = locks;
    for (;;) {
        combinations.push_back(modifiers | subset);
        if (subset == 0) {
            return combinations;
        }
        subset = std::uint16_t((subset - 1) & locks);
    }
}

bool ModifierMap::isExactly(std::uint16_t state, std::uint16_t modifiers) const {
    return (state & kModifierBits & ~(m_locks & ~modifiers)) == modifiers;
}

} // namespace tallowby
