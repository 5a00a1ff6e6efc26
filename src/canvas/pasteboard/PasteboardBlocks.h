#pragma once

#include "model/Block.h"
#include "platform/desktop/Pasteboard.h"

#include <QString>

#include <optional>
#include <vector>

namespace tallowby {

/// Blocks as they travel over the pasteboard, from one instance of the program to another or back into the same one.
/// The records of the block file under one MIME type; under a second one, what records do not carry: an array with
/// [sticky colour, code language] for each block.
inline constexpr qsizetype kMostPasteboardBlocks = 10'000;
inline constexpr qsizetype kLargestPasteboardDocument = 64 * 1024 * 1024;

struct PasteboardWriting {
    PasteboardContent content;
    /// Why the blocks themselves are not in it, to go after their name.
    QString refusal;
};
/// The whole picture of an image block, however small it is shown; none where its payload holds none.
[[nodiscard]] std::optional<PasteboardPicture> pictureOf(const Block &block);

/// The blocks in paint order, their texts in reading order with blank lines between them, and the picture when the one
/// block is a picture.
[[nodiscard]] PasteboardWriting pasteboardContentOf(const std::vector<BlockPtr> &blocks);

struct PasteboardReading {
    /// New blocks with ids of their own, where they were copied, in paint order.
    std::vector<BlockPtr> blocks;
    /// Why what is there cannot be used; empty when nothing is there, too.
    QString refusal;
};
/// Anything wrong refuses the whole.
[[nodiscard]] PasteboardReading blocksOn(const Pasteboard &pasteboard, QUuid ownerId);

} // namespace tallowby
