#pragma once

#include <QString>

#include <cstdint>
#include <optional>

class QKeyEvent;

/// What a key press means to the canvas and its editors.
namespace tallowby {

/// The virtual key code of a key with a name: by what the user's layout makes of it, so that swapped keys work as the
/// user swapped them, else by its place. The keypad's Enter counts as Return.
[[nodiscard]] std::optional<std::uint32_t> virtualKeyOf(const QKeyEvent &event);

/// Whether the key stands for this ASCII character in a shortcut. A key that a layout without Latin letters gives
/// another character counts by its place.
[[nodiscard]] bool isShortcutKey(const QKeyEvent &event, Qt::Key character);

/// A key that only changes what others do, or what is composed of the next one.
[[nodiscard]] bool isModifierKey(const QKeyEvent &event);

/// Control or Super.
[[nodiscard]] bool isCommandHeld(Qt::KeyboardModifiers modifiers);

/// The text without anything that does not print.
[[nodiscard]] QString printable(const QString &text);
/// What the key types; nothing when a modifier makes a command of it.
[[nodiscard]] QString typedText(const QKeyEvent &event);

} // namespace tallowby
