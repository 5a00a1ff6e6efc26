#pragma once

#include "platform/Scheduler.h"

#include <memory>
#include <vector>

namespace tallowby::test {

/// A clock that moves only when a test says so. Calls that fall due run in order of their time, then of their request.
class VirtualScheduler final : public Scheduler {
public:
    /// 2025-01-31 07:06:40 UTC, 760,000,000 s after the reference date of the file.
    static constexpr std::chrono::seconds kStart{1'738'307'200};

    VirtualScheduler();
    ~VirtualScheduler() override;

    [[nodiscard]] ScheduledCall after(Duration delay, std::function<void()> call) override;
    [[nodiscard]] ScheduledCall every(Duration interval, std::function<void()> call) override;
    [[nodiscard]] WallClock::time_point now() const override;
    [[nodiscard]] Duration monotonic() const override;

    /// Moves the clock on and runs what falls due on the way, each at its own time.
    void advance(Duration duration);
    /// How many calls still wait; 0 means that nothing would ever wake the program.
    [[nodiscard]] std::size_t pendingCalls() const;

private:
    struct Entry;
    struct State;
    [[nodiscard]] ScheduledCall schedule(Duration delay, Duration interval, std::function<void()> call);

    Duration m_elapsed{0};
    std::uint64_t m_nextOrder = 0;
    std::vector<std::weak_ptr<Entry>> m_entries;
};

} // namespace tallowby::test
