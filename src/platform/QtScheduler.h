#pragma once

#include "platform/Scheduler.h"

namespace tallowby {

/// The scheduler of the running program: timers of the event loop of the thread that calls it.
class QtScheduler final : public Scheduler {
public:
    [[nodiscard]] ScheduledCall after(Duration delay, std::function<void()> call) override;
    [[nodiscard]] ScheduledCall every(Duration interval, std::function<void()> call) override;
    [[nodiscard]] WallClock::time_point now() const override;
    [[nodiscard]] Duration monotonic() const override;
};

} // namespace tallowby
