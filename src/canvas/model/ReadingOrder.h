#pragma once

#include "model/Block.h"

#include <vector>

namespace tallowby {

/// The blocks as a person reads a page: rows from top to bottom, each from left to right. A row is a block and all
/// those below its top edge whose middle is above its bottom edge.
[[nodiscard]] std::vector<BlockPtr> inReadingOrder(std::vector<BlockPtr> blocks);

} // namespace tallowby
