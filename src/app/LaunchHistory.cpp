#include "app/LaunchHistory.h"

#include "platform/UserDefaults.h"

namespace tallowby {

namespace {

constexpr QLatin1StringView kLastSeenAppVersionKey{"lastSeenAppVersion"};

} // namespace

LaunchKind noteLaunch(UserDefaults &defaults, const QString &version) {
    const auto lastSeen = defaults.string(kLastSeenAppVersionKey);
    defaults.setString(kLastSeenAppVersionKey, version);
    if (!lastSeen) {
        return LaunchKind::first;
    }
    return *lastSeen == version ? LaunchKind::sameVersion : LaunchKind::otherVersion;
}

} // namespace tallowby
