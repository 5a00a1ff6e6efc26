#pragma once

#include <QString>

#include <cstdint>

namespace tallowby {

/// What the desktops that `XDG_CURRENT_DESKTOP` names use a combination for as they are installed, as a noun; empty for
/// nothing that is known.
[[nodiscard]] QString desktopUseOfKeys(std::uint32_t keyCode, std::uint32_t modifiers);

} // namespace tallowby
