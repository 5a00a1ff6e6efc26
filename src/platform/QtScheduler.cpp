#include "platform/QtScheduler.h"

#include <QTimer>

namespace tallowby {

namespace {

struct TimerState final : ScheduledCall::State {
    QTimer timer;

    [[nodiscard]] bool isPending() const override { return timer.isActive(); }
};

ScheduledCall startTimer(Scheduler::Duration delay, bool singleShot, std::function<void()> call) {
    auto state = std::make_unique<TimerState>();
    state->timer.setSingleShot(singleShot);
    state->timer.setTimerType(Qt::PreciseTimer);
    // The call may cancel its own handle, which destroys the timer and this lambda with it: run a copy.
    QObject::connect(&state->timer, &QTimer::timeout, [call = std::move(call)] {
        const auto running = call;
        running();
    });
    state->timer.start(std::chrono::ceil<std::chrono::milliseconds>(delay));
    return ScheduledCall(std::move(state));
}

} // namespace

ScheduledCall QtScheduler::after(Duration delay, std::function<void()> call) {
    return startTimer(delay, true, std::move(call));
}

ScheduledCall QtScheduler::every(Duration interval, std::function<void()> call) {
    return startTimer(interval, false, std::move(call));
}

Scheduler::WallClock::time_point QtScheduler::now() const {
    return WallClock::now();
}

Scheduler::Duration QtScheduler::monotonic() const {
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace tallowby
