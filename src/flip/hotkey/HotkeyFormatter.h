#pragma once

#include <QStringList>

#include <cstdint>

/// A key combination as people read it: glyphs of the modifiers, then the name of the key.
namespace tallowby::HotkeyFormatter {

/// The name on the key of a US keyboard, or "Key " and the code for one without a name.
[[nodiscard]] QString keyName(std::uint32_t keyCode);
/// Glyphs in menu order, ⌃⌥⇧⌘, and the key's name, with nothing between. Bits other than those four are ignored.
[[nodiscard]] QString string(std::uint32_t keyCode, std::uint32_t modifiers);

/// What stands on the keys that are pressed for it, in the same order: "Ctrl", "Alt", "Shift", "Super", and the key.
[[nodiscard]] QStringList keyCaps(std::uint32_t keyCode, std::uint32_t modifiers);

} // namespace tallowby::HotkeyFormatter
