#pragma once

#include "model/Block.h"

namespace tallowby {

/// Whether the record says something later about its block than the block itself does. A deletion counts by its own
/// time: it does not move `updatedAt`.
[[nodiscard]] bool isLater(const BlockFields &record, const BlockFields &block);

/// Gives the block everything that a record carries, but the owner: to whom the blocks of a store belong is not for a
/// file to say. Observers hear of each change.
void takeOver(Block &block, const BlockFields &record);

/// Whether the record has what the backend has not been sent.
[[nodiscard]] bool isUnsent(const BlockFields &record);

} // namespace tallowby
