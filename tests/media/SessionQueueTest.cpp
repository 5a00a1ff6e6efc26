#include "media/SessionQueue.h"
#include "support/VirtualScheduler.h"
#include "support/WaitUntil.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QThread>

namespace tallowby::test {

using namespace std::chrono_literals;

TEST(SessionQueueTest, JobsRunInOrderOnAThreadOfTheirOwn) {
    VirtualScheduler scheduler;
    std::vector<int> order;
    bool isTold = false;
    bool isAway = false;
    {
        ThreadSessionQueue queue(scheduler);
        queue.async([&] {
            isAway = QThread::currentThread() != QCoreApplication::instance()->thread();
            order.push_back(1);
            queue.sleepThen(5ms, [&] { order.push_back(2); });
        });
        queue.async([&] {
            order.push_back(3);
            queue.asyncAfter(3s, [&] { order.push_back(4); });
            queue.asyncAfter(1min, [&] { order.push_back(5); });
            queue.onMain([&] { isTold = QThread::currentThread() == QCoreApplication::instance()->thread(); });
        });
        EXPECT_TRUE(waitUntil([&] { return isTold; }));
        EXPECT_EQ(scheduler.pendingCalls(), 2U);
        scheduler.advance(3s);
        EXPECT_EQ(scheduler.pendingCalls(), 1U);
    }
    EXPECT_TRUE(isAway);
    EXPECT_THAT(order, testing::ElementsAre(1, 2, 3, 4)) << "what was still to come does not come";
    EXPECT_EQ(scheduler.pendingCalls(), 0U);
}

} // namespace tallowby::test
