#pragma once

#include "model/Block.h"

#include <cstddef>
#include <optional>
#include <variant>
#include <vector>

namespace tallowby {

/// What a block file held: the records that are not deleted, in order, and how many others there were.
struct LoadedBlocks {
    std::vector<SharedBlockFields> records;
    std::size_t purgedCount = 0;
};

/// The file is there and could not be read or decoded.
struct UnreadableBlockFile {
    QString reason;
};

/// Nothing when there is no file. Reads a large file on two cores.
using BlockFileContent = std::variant<std::monostate, LoadedBlocks, UnreadableBlockFile>;
[[nodiscard]] BlockFileContent readBlockFile(const QString &path);

} // namespace tallowby
