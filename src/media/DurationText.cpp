#include "media/DurationText.h"

#include <cmath>
#include <cstdint>

namespace tallowby {

QString formatDuration(double seconds) {
    constexpr double kBeyond = 9'223'372'036'854'775'808.0;
    if (!(std::abs(seconds) < kBeyond)) {
        qFatal("A duration of %f seconds cannot be written", seconds);
    }
    const auto whole = std::int64_t(seconds);
    return QString::asprintf("%lld:%02lld", static_cast<long long>(whole / 60), static_cast<long long>(whole % 60));
}

} // namespace tallowby
