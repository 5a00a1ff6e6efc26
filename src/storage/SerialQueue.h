#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace tallowby {

/// Runs jobs one after another, in the order of their arrival, on a thread of its own that sleeps while there are none.
class SerialQueue {
public:
    /// The label names the thread, as far as the system has room for it (15 characters).
    explicit SerialQueue(std::string label);
    /// Lets every job that was handed over finish.
    ~SerialQueue();
    SerialQueue(const SerialQueue &) = delete;
    SerialQueue &operator=(const SerialQueue &) = delete;

    /// Any thread.
    void async(std::function<void()> job);
    /// Waits until every job that was handed over so far has run.
    void finish();

private:
    void run(const std::string &label);

    std::mutex m_mutex;
    std::condition_variable m_wakeUp;
    std::deque<std::function<void()>> m_jobs;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace tallowby
