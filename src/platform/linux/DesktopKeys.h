#pragma once

#include <QString>

#include <cstdint>

namespace tallowby {

/// The use of a combination in the default settings of the desktop that `XDG_CURRENT_DESKTOP` names, as a noun; empty
/// when none is known.
[[nodiscard]] QString desktopUseOfKeys(std::uint32_t keyCode, std::uint32_t modifiers);

} // namespace tallowby
