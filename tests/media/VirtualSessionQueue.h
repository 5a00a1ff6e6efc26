#pragma once

#include "media/SessionQueue.h"
#include "support/VirtualScheduler.h"

#include <algorithm>
#include <vector>

namespace tallowby::test {

/// A session queue and a main thread in virtual time. Nothing runs before the clock is moved, if only by nothing.
class VirtualSessionQueue final : public SessionQueue {
public:
    explicit VirtualSessionQueue(VirtualScheduler &scheduler)
        : m_scheduler(scheduler) {}

    void async(Job job) override {
        later(std::max(Scheduler::Duration(0), m_restsUntil - m_scheduler.monotonic()), job);
    }
    void asyncAfter(Scheduler::Duration delay, Job job) override {
        later(delay, [this, job] { async(job); });
    }
    void sleepThen(Scheduler::Duration delay, const Job &rest) override {
        m_restsUntil = m_scheduler.monotonic() + delay;
        later(delay, rest);
    }
    void onMain(Job job) override { later(Scheduler::Duration(0), job); }

private:
    void later(Scheduler::Duration delay, const Job &job) { m_calls.push_back(m_scheduler.after(delay, job)); }

    VirtualScheduler &m_scheduler;
    Scheduler::Duration m_restsUntil{0};
    std::vector<ScheduledCall> m_calls;
};

} // namespace tallowby::test
