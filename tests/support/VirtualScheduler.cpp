#include "support/VirtualScheduler.h"

#include <algorithm>
#include <tuple>

namespace tallowby::test {

struct VirtualScheduler::Entry {
    Duration due;
    Duration interval;
    std::uint64_t order;
    std::function<void()> call;
    bool isPending = true;
};

struct VirtualScheduler::State final : ScheduledCall::State {
    std::shared_ptr<Entry> entry;

    [[nodiscard]] bool isPending() const override { return entry->isPending; }
};

VirtualScheduler::VirtualScheduler() = default;
VirtualScheduler::~VirtualScheduler() = default;

ScheduledCall VirtualScheduler::after(Duration delay, std::function<void()> call) {
    return schedule(delay, Duration::zero(), std::move(call));
}

ScheduledCall VirtualScheduler::every(Duration interval, std::function<void()> call) {
    return schedule(interval, interval, std::move(call));
}

ScheduledCall VirtualScheduler::schedule(Duration delay, Duration interval, std::function<void()> call) {
    auto entry = std::make_shared<Entry>(Entry{m_elapsed + delay, interval, m_nextOrder++, std::move(call)});
    m_entries.push_back(entry);
    auto state = std::make_unique<State>();
    state->entry = std::move(entry);
    return ScheduledCall(std::move(state));
}

Scheduler::WallClock::time_point VirtualScheduler::now() const {
    return WallClock::time_point(std::chrono::duration_cast<WallClock::duration>(kStart + m_elapsed));
}

Scheduler::Duration VirtualScheduler::monotonic() const {
    return m_elapsed;
}

void VirtualScheduler::advance(Duration duration) {
    const Duration end = m_elapsed + duration;
    for (;;) {
        std::shared_ptr<Entry> next;
        for (const auto &weak : m_entries) {
            const auto entry = weak.lock();
            if (entry && entry->isPending && entry->due <= end &&
                (!next || std::tie(entry->due, entry->order) < std::tie(next->due, next->order))) {
                next = entry;
            }
        }
        if (!next) {
            break;
        }
        m_elapsed = std::max(m_elapsed, next->due);
        if (next->interval > Duration::zero()) {
            next->due += next->interval;
        } else {
            next->isPending = false;
        }
        next->call();
    }
    m_elapsed = end;
    std::erase_if(m_entries, [](const auto &weak) { return weak.expired(); });
}

std::size_t VirtualScheduler::pendingCalls() const {
    return std::size_t(std::ranges::count_if(m_entries, [](const auto &weak) {
        const auto entry = weak.lock();
        return entry && entry->isPending;
    }));
}

} // namespace tallowby::test
