#pragma once

#include "platform/Scheduler.h"
#include "storage/SerialQueue.h"

#include <QObject>

#include <functional>
#include <list>

namespace tallowby {

/// Where cameras are opened and closed: jobs one after another, away from the main thread.
class SessionQueue {
public:
    using Job = std::function<void()>;

    virtual ~SessionQueue() = default;

    /// Any thread.
    virtual void async(Job job) = 0;
    virtual void asyncAfter(Scheduler::Duration delay, Job job) = 0;
    /// The last thing that a job does: the queue rests, then goes on with `rest` as if it belonged to the job.
    virtual void sleepThen(Scheduler::Duration delay, const Job &rest) = 0;
    /// Any thread. Runs the job on the main thread, later.
    virtual void onMain(Job job) = 0;
};

/// A thread of its own. Main thread only, but for what says otherwise.
class ThreadSessionQueue final : public QObject, public SessionQueue {
    Q_OBJECT

public:
    explicit ThreadSessionQueue(Scheduler &scheduler);
    /// Finishes every job that was handed over; those that were to come after a delay do not come.
    ~ThreadSessionQueue() override;

    void async(Job job) override { m_queue.async(std::move(job)); }
    void asyncAfter(Scheduler::Duration delay, Job job) override;
    void sleepThen(Scheduler::Duration delay, const Job &rest) override;
    void onMain(Job job) override;

private:
    Scheduler &m_scheduler;
    std::list<ScheduledCall> m_waiting;
    /// The last member: its end waits for jobs that use the others.
    SerialQueue m_queue{"com.tallowby.videocapture"};
};

} // namespace tallowby
