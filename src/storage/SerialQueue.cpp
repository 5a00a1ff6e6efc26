#include "storage/SerialQueue.h"

#include <future>
#include <utility>

#include <pthread.h>

namespace tallowby {

namespace {

constexpr std::size_t kThreadNameLength = 15;

} // namespace

SerialQueue::SerialQueue(std::string label)
    : m_thread([this, label = std::move(label)] { run(label); }) {}

SerialQueue::~SerialQueue() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_wakeUp.notify_one();
    m_thread.join();
}

void SerialQueue::async(std::function<void()> job) {
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_wakeUp.notify_one();
}

void SerialQueue::finish() {
    std::promise<void> reached;
    async([&reached] { reached.set_value(); });
    reached.get_future().wait();
}

void SerialQueue::run(const std::string &label) {
    pthread_setname_np(pthread_self(), label.substr(0, kThreadNameLength).c_str());
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wakeUp.wait(lock, [this] { return m_isEnding || !m_jobs.empty(); });
        if (m_jobs.empty()) {
            return;
        }
        auto job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        job();
        job = nullptr; // What the job holds may be large and is let go of outside the lock.
        lock.lock();
    }
}

} // namespace tallowby
