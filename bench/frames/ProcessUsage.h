#pragma once

#include <sys/types.h>

namespace tallowby::bench {

/// What the kernel has counted of one process, read from /proc.
struct ProcessUsage {
    /// User and system time of all threads so far, in seconds.
    double processorSeconds = 0;
    double residentMiB = 0;
    /// Resident memory with each shared page divided by the number of its users.
    double proportionalMiB = 0;

    [[nodiscard]] static ProcessUsage of(pid_t pid);
};

} // namespace tallowby::bench
