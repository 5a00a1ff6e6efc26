#include "platform/QtScheduler.h"

#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <string>

namespace tallowby {

namespace {

using std::chrono::milliseconds;
using test::waitUntil;

TEST(QtScheduler, RunsCallsInOrderOfTheirTimeThenOfTheirRequest) {
    QtScheduler scheduler;
    std::string order;
    const auto c = scheduler.after(milliseconds(2), [&] { order += 'c'; });
    const auto a = scheduler.after(milliseconds(0), [&] { order += 'a'; });
    const auto b = scheduler.after(milliseconds(0), [&] { order += 'b'; });
    EXPECT_EQ(order, "") << "a call without delay is not run at once";
    EXPECT_TRUE(a.isPending());
    EXPECT_TRUE(waitUntil([&] { return order.size() == 3; }));
    EXPECT_EQ(order, "abc");
    EXPECT_FALSE(a.isPending());
}

TEST(QtScheduler, CallsMayCancelOthersAndThemselves) {
    QtScheduler scheduler;
    std::string order;
    ScheduledCall repeated;
    ScheduledCall other = scheduler.after(milliseconds(1), [&] { order += 'x'; });
    ScheduledCall once = scheduler.after(milliseconds(0), [&, kept = std::string("1")] {
        other.cancel();
        once.cancel();
        order += kept; // What the call holds outlives its handle while it runs.
    });
    repeated = scheduler.every(milliseconds(1), [&] {
        order += 'r';
        if (order.size() == 4) {
            repeated.cancel();
        }
    });
    EXPECT_TRUE(waitUntil([&] { return order.size() == 4; }));
    const auto last = scheduler.after(milliseconds(3), [&] { order += '!'; });
    EXPECT_TRUE(waitUntil([&] { return order.back() == '!'; }));
    EXPECT_EQ(order, "1rrr!");
}

} // namespace

} // namespace tallowby
