#pragma once

#include <Qt>

#include <cstdint>
#include <optional>

class QKeyEvent;

/// Physical keys by virtual key code, and the modifier masks that are stored beside them. One table serves the hot key,
/// its recorder and the keys of canvas and editors.
namespace tallowby {

/// Virtual key codes that the program names.
namespace keycode {
inline constexpr std::uint32_t kReturn = 36;
inline constexpr std::uint32_t kSpace = 49;
inline constexpr std::uint32_t kDelete = 51;
inline constexpr std::uint32_t kEscape = 53;
inline constexpr std::uint32_t kForwardDelete = 117;
inline constexpr std::uint32_t kLeftArrow = 123;
inline constexpr std::uint32_t kRightArrow = 124;
inline constexpr std::uint32_t kDownArrow = 125;
inline constexpr std::uint32_t kUpArrow = 126;
} // namespace keycode

/// The Carbon modifier mask, in which a hot key is stored.
namespace carbon {
inline constexpr std::uint32_t cmdKey = 0x100;
inline constexpr std::uint32_t shiftKey = 0x200;
inline constexpr std::uint32_t optionKey = 0x800;
inline constexpr std::uint32_t controlKey = 0x1000;
} // namespace carbon

/// The evdev code (linux/input-event-codes.h) of the key with this virtual key code.
[[nodiscard]] std::optional<std::uint32_t> evdevFromVirtualKey(std::uint32_t keyCode);
[[nodiscard]] std::optional<std::uint32_t> virtualKeyFromEvdev(std::uint32_t evdevCode);
/// The key that Qt names at this place of a US keyboard; for events that carry no physical code.
[[nodiscard]] std::optional<std::uint32_t> virtualKeyFromQtKey(Qt::Key key);
[[nodiscard]] std::optional<Qt::Key> qtKeyFromVirtualKey(std::uint32_t keyCode);

/// The virtual key code of the place on the keyboard that was pressed. None for an event that carries no place.
[[nodiscard]] std::optional<std::uint32_t> virtualKeyByPlace(const QKeyEvent &event);

/// Command is Super, Option is Alt; every other Qt modifier is dropped.
[[nodiscard]] std::uint32_t carbonModifierFlags(Qt::KeyboardModifiers modifiers);

} // namespace tallowby
