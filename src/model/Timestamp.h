#pragma once

#include <chrono>
#include <compare>

namespace tallowby {

/// A point in time as the file keeps it: seconds, with fraction, since 2001-01-01 00:00:00 UTC. Kept as that number, so
/// that a value read from the file is written back to the letter.
struct Timestamp {
    /// From the Unix epoch to 2001-01-01 00:00:00 UTC.
    static constexpr std::chrono::seconds kReferenceDate{978'307'200};

    double secondsSinceReference = 0.0;

    [[nodiscard]] static Timestamp from(std::chrono::system_clock::time_point time) {
        return {std::chrono::duration<double>(time.time_since_epoch() - kReferenceDate).count()};
    }
    // NOLINTNEXTLINE(modernize-use-nullptr): the check takes the 0 in the default for a pointer.
    friend auto operator<=>(const Timestamp &, const Timestamp &) = default;
};

} // namespace tallowby
