#include "model/TimestampCoding.h"

#include <gtest/gtest.h>

namespace tallowby {

TEST(WireTimestamps, AreReadInEveryFormThatServersWrite) {
    const struct {
        const char *text;
        double seconds;
    } kCases[]{
        {"2025-01-31T07:06:40Z", 760'000'000},
        {"2025-01-31T07:06:40.5Z", 760'000'000.5},
        {"2025-01-31T07:06:40.123456+00:00", 760'000'000.123456},
        {"2025-01-31T07:06:40.123456789012+00", 760'000'000.123456789012},
        {"2025-01-31T09:36:40+02:30", 760'000'000},
        {"2025-01-31T02:06:40-0500", 760'000'000},
        {"2000-12-31T23:59:59.25z", -0.75},
        {"2024-02-29T00:00:00Z", 730'857'600},
    };
    for (const auto &each : kCases) {
        const auto read = timestampFromIso(each.text);
        ASSERT_TRUE(read) << each.text;
        EXPECT_DOUBLE_EQ(read->secondsSinceReference, each.seconds) << each.text;
    }
    for (const char *text :
         {"", "2025-01-31", "2025-01-31T07:06:40", "2025-01-31 07:06:40Z", "2025-01-31T07:06:40.Z",
          "2025-02-30T00:00:00Z", "2025-01-31T24:00:00Z", "2025-01-31T07:06:40Zulu", "2025-01-31T07:06:40+24:00",
          "infinity", "0000-01-01T00:00:00Z", "+2025-01-31T07:06:40Z", "2025-1-31T07:06:40Z", "760000000"}) {
        EXPECT_FALSE(timestampFromIso(text)) << text;
    }
}

TEST(WireTimestamps, AreWrittenWithoutEverLookingNewer) {
    EXPECT_EQ(isoMilliseconds({760'000'000.1239}), "2025-01-31T07:06:40.123Z");
    EXPECT_EQ(isoMilliseconds({-0.75}), "2000-12-31T23:59:59.250Z");
    EXPECT_EQ(isoSeconds({760'000'000.999}), "2025-01-31T07:06:40Z");
    EXPECT_EQ(isoSeconds({-63'113'904'000.0}), "0001-01-01T00:00:00Z");
    EXPECT_FALSE(isoMilliseconds({1e300}));
    // What came over the wire goes back as it came, whatever the nearest double is.
    for (int millisecond = 0; millisecond < 1000; ++millisecond) {
        const auto text = isoMilliseconds({760'000'000 + millisecond / 1000.0});
        ASSERT_TRUE(text);
        EXPECT_EQ(isoMilliseconds(*timestampFromIso(*text)), text);
        EXPECT_EQ(text->substr(20, 3), std::to_string(1000 + millisecond).substr(1));
    }
}

} // namespace tallowby
