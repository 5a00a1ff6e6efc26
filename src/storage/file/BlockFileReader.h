#pragma once

#include "model/Block.h"
#include "storage/file/FileIdentity.h"
#include "storage/file/FileProblem.h"

#include <cstddef>
#include <variant>
#include <vector>

namespace tallowby {

/// What a block file held: the wanted records, in order, and how many deleted ones were left out.
struct LoadedBlocks {
    std::vector<SharedBlockFields> records;
    std::size_t purgedCount = 0;
    FileIdentity identity;
};

/// The file was read and is no block file. Reading it again gives the same.
struct UnreadableBlockFile {
    QString reason;
    FileIdentity identity;
};

enum class DeletedRecords { leaveOut, keep };

/// Nothing when there is certainly no file. A `FileProblem` says that the system did not let us read it, which tells
/// nothing about its content: it may be whole. Reads a large file on two cores.
using BlockFileContent = std::variant<std::monostate, LoadedBlocks, UnreadableBlockFile, FileProblem>;
[[nodiscard]] BlockFileContent readBlockFile(const QString &path, DeletedRecords deleted);

} // namespace tallowby
