#pragma once

#include "canvas/model/BlockKindRegistry.h"

namespace tallowby {

/// What the colour of a block is, by kinds.
namespace kindColors {
[[nodiscard]] const BlockColor &text();
/// A symbol is drawn in the colour of text, from another ink.
[[nodiscard]] const BlockColor &icon();
/// Of an outline.
[[nodiscard]] const BlockColor &stroke();
/// Of all strokes of a sketch; empty while they differ.
[[nodiscard]] const BlockColor &strokes();
} // namespace kindColors

} // namespace tallowby
