#pragma once

#include <QString>

namespace tallowby {

class UserDefaults;

/// How this launch follows on the one before.
enum class LaunchKind {
    first, ///< there was none
    sameVersion,
    otherVersion
};

/// Compares the version of this launch with that of the last one, and remembers it for the next.
[[nodiscard]] LaunchKind noteLaunch(UserDefaults &defaults, const QString &version);

} // namespace tallowby
