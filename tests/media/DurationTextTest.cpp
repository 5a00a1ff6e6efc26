#include "media/DurationText.h"

#include <gtest/gtest.h>

#include <limits>

namespace tallowby::test {

TEST(DurationText, IsCutOffAndCountsMinutesOnly) {
    EXPECT_EQ(formatDuration(0), QStringLiteral("0:00"));
    EXPECT_EQ(formatDuration(59.999), QStringLiteral("0:59"));
    EXPECT_EQ(formatDuration(75.9), QStringLiteral("1:15"));
    EXPECT_EQ(formatDuration(3'600), QStringLiteral("60:00"));
    EXPECT_DEATH(formatDuration(std::numeric_limits<double>::quiet_NaN()), "cannot be written");
    EXPECT_DEATH(formatDuration(1e19), "cannot be written");
}

} // namespace tallowby::test
