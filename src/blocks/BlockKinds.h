#pragma once

#include "canvas/model/BlockKindRegistry.h"

namespace tallowby {

/// The registry of the program's kinds, with the bodies of this folder. Names are in the language that is set when it
/// is first asked for.
[[nodiscard]] const BlockKindRegistry &blockKinds();

} // namespace tallowby
