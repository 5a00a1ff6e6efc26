#pragma once

#include <cstdint>

#include <sys/stat.h>

namespace tallowby {

/// What tells one state of a file from another without reading it: a file that was replaced, written to or cut has
/// another identity.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t modifiedSeconds = 0;
    std::int64_t modifiedNanoseconds = 0;
    std::int64_t size = 0;

    FileIdentity() = default;
    explicit FileIdentity(const struct stat &status)
        : device(status.st_dev)
        , inode(status.st_ino)
        , modifiedSeconds(status.st_mtim.tv_sec)
        , modifiedNanoseconds(status.st_mtim.tv_nsec)
        , size(status.st_size) {}

    friend bool operator==(const FileIdentity &, const FileIdentity &) = default;
};

} // namespace tallowby
