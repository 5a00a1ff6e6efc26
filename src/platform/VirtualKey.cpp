#include "platform/VirtualKey.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace tallowby {

namespace {

struct PhysicalKey {
    std::uint32_t virtualKey;
    std::uint32_t evdev;
    Qt::Key qtKey;
};

constexpr auto kPhysicalKeys = std::to_array<PhysicalKey>({
    {0, 30, Qt::Key_A},
    {1, 31, Qt::Key_S},
    {2, 32, Qt::Key_D},
    {3, 33, Qt::Key_F},
    {4, 35, Qt::Key_H},
    {5, 34, Qt::Key_G},
    {6, 44, Qt::Key_Z},
    {7, 45, Qt::Key_X},
    {8, 46, Qt::Key_C},
    {9, 47, Qt::Key_V},
    {10, 86, Qt::Key_section},
    {11, 48, Qt::Key_B},
    {12, 16, Qt::Key_Q},
    {13, 17, Qt::Key_W},
    {14, 18, Qt::Key_E},
    {15, 19, Qt::Key_R},
    {16, 21, Qt::Key_Y},
    {17, 20, Qt::Key_T},
    {18, 2, Qt::Key_1},
    {19, 3, Qt::Key_2},
    {20, 4, Qt::Key_3},
    {21, 5, Qt::Key_4},
    {22, 7, Qt::Key_6},
    {23, 6, Qt::Key_5},
    {24, 13, Qt::Key_Equal},
    {25, 10, Qt::Key_9},
    {26, 8, Qt::Key_7},
    {27, 12, Qt::Key_Minus},
    {28, 9, Qt::Key_8},
    {29, 11, Qt::Key_0},
    {30, 27, Qt::Key_BracketRight},
    {31, 24, Qt::Key_O},
    {32, 22, Qt::Key_U},
    {33, 26, Qt::Key_BracketLeft},
    {34, 23, Qt::Key_I},
    {35, 25, Qt::Key_P},
    {keycode::kReturn, 28, Qt::Key_Return},
    {37, 38, Qt::Key_L},
    {38, 36, Qt::Key_J},
    {39, 40, Qt::Key_Apostrophe},
    {40, 37, Qt::Key_K},
    {41, 39, Qt::Key_Semicolon},
    {42, 43, Qt::Key_Backslash},
    {43, 51, Qt::Key_Comma},
    {44, 53, Qt::Key_Slash},
    {45, 49, Qt::Key_N},
    {46, 50, Qt::Key_M},
    {47, 52, Qt::Key_Period},
    {48, 15, Qt::Key_Tab},
    {keycode::kSpace, 57, Qt::Key_Space},
    {50, 41, Qt::Key_QuoteLeft},
    {keycode::kDelete, 14, Qt::Key_Backspace},
    {keycode::kEscape, 1, Qt::Key_Escape},
    {96, 63, Qt::Key_F5},
    {97, 64, Qt::Key_F6},
    {98, 65, Qt::Key_F7},
    {99, 61, Qt::Key_F3},
    {100, 66, Qt::Key_F8},
    {101, 67, Qt::Key_F9},
    {103, 87, Qt::Key_F11},
    {109, 68, Qt::Key_F10},
    {111, 88, Qt::Key_F12},
    {115, 102, Qt::Key_Home},
    {116, 104, Qt::Key_PageUp},
    {keycode::kForwardDelete, 111, Qt::Key_Delete},
    {118, 62, Qt::Key_F4},
    {119, 107, Qt::Key_End},
    {120, 60, Qt::Key_F2},
    {121, 109, Qt::Key_PageDown},
    {122, 59, Qt::Key_F1},
    {keycode::kLeftArrow, 105, Qt::Key_Left},
    {keycode::kRightArrow, 106, Qt::Key_Right},
    {keycode::kDownArrow, 108, Qt::Key_Down},
    {keycode::kUpArrow, 103, Qt::Key_Up},
});

/// An X server numbers the keys from 8 on.
constexpr std::uint32_t kXKeycodeOffset = 8;

template <typename Value>
const PhysicalKey *findKey(Value PhysicalKey::*field, Value value) {
    const auto *key = std::ranges::find(kPhysicalKeys, value, field);
    return key == kPhysicalKeys.end() ? nullptr : key;
}

} // namespace

std::optional<std::uint32_t> evdevFromVirtualKey(std::uint32_t keyCode) {
    const PhysicalKey *key = findKey(&PhysicalKey::virtualKey, keyCode);
    return key ? std::optional(key->evdev) : std::nullopt;
}

std::optional<std::uint32_t> virtualKeyFromEvdev(std::uint32_t evdevCode) {
    const PhysicalKey *key = findKey(&PhysicalKey::evdev, evdevCode);
    return key ? std::optional(key->virtualKey) : std::nullopt;
}

std::optional<std::uint32_t> virtualKeyFromQtKey(Qt::Key qtKey) {
    const PhysicalKey *key = findKey(&PhysicalKey::qtKey, qtKey);
    return key ? std::optional(key->virtualKey) : std::nullopt;
}

std::optional<Qt::Key> qtKeyFromVirtualKey(std::uint32_t keyCode) {
    const PhysicalKey *key = findKey(&PhysicalKey::virtualKey, keyCode);
    return key ? std::optional(key->qtKey) : std::nullopt;
}

std::optional<std::uint32_t> virtualKeyByPlace(const QKeyEvent &event) {
    const std::uint32_t scanCode = event.nativeScanCode();
    return scanCode > kXKeycodeOffset ? virtualKeyFromEvdev(scanCode - kXKeycodeOffset) : std::nullopt;
}

std::uint32_t carbonModifierFlags(Qt::KeyboardModifiers modifiers) {
    std::uint32_t mask = 0;
    if (modifiers & Qt::MetaModifier) {
        mask |= carbon::cmdKey;
    }
    if (modifiers & Qt::AltModifier) {
        mask |= carbon::optionKey;
    }
    if (modifiers & Qt::ControlModifier) {
        mask |= carbon::controlKey;
    }
    if (modifiers & Qt::ShiftModifier) {
        mask |= carbon::shiftKey;
    }
    return mask;
}

} // namespace tallowby
