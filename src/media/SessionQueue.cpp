#include "media/SessionQueue.h"

#include <thread>
#include <utility>

namespace tallowby {

ThreadSessionQueue::ThreadSessionQueue(Scheduler &scheduler)
    : m_scheduler(scheduler) {}

ThreadSessionQueue::~ThreadSessionQueue() = default;

void ThreadSessionQueue::asyncAfter(Scheduler::Duration delay, Job job) {
    onMain([this, delay, job = std::move(job)] {
        const auto place = m_waiting.emplace(m_waiting.end());
        *place = m_scheduler.after(delay, [this, place, job] {
            // The call ends with its place.
            const auto now = std::exchange(*place, {});
            m_waiting.erase(place);
            async(job);
        });
    });
}

void ThreadSessionQueue::sleepThen(Scheduler::Duration delay, const Job &rest) {
    std::this_thread::sleep_for(delay);
    rest();
}

void ThreadSessionQueue::onMain(Job job) {
    QMetaObject::invokeMethod(this, std::move(job), Qt::QueuedConnection);
}

} // namespace tallowby
