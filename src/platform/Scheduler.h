#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace tallowby {

/// Owns one pending or repeating call. Destroying or resetting it cancels the call; a call that has run is spent.
/// Movable, not copyable. Belongs to the thread of the scheduler that made it.
class ScheduledCall {
public:
    struct State {
        virtual ~State() = default;
        [[nodiscard]] virtual bool isPending() const = 0;
    };

    ScheduledCall() = default;
    explicit ScheduledCall(std::unique_ptr<State> state)
        : m_state(std::move(state)) {}

    void cancel() { m_state.reset(); }
    /// True while the call is still to come.
    [[nodiscard]] bool isPending() const { return m_state && m_state->isPending(); }

private:
    std::unique_ptr<State> m_state;
};

/// The one source of time: every delay, debounce, ticker and poll goes through it, so that tests can hand in a clock
/// that moves by hand. Calls run on the scheduler's own thread, in order of their due time and, when due together, in
/// order of their request.
class Scheduler {
public:
    using Duration = std::chrono::nanoseconds;
    using WallClock = std::chrono::system_clock;

    virtual ~Scheduler() = default;

    /// Runs `call` once, `delay` from now. A delay of zero runs at the next turn of the event loop, never at once.
    [[nodiscard]] virtual ScheduledCall after(Duration delay, std::function<void()> call) = 0;
    /// Runs `call` every `interval` until the handle is cancelled.
    [[nodiscard]] virtual ScheduledCall every(Duration interval, std::function<void()> call) = 0;
    /// Wall-clock time, for stamps that are kept.
    [[nodiscard]] virtual WallClock::time_point now() const = 0;
    /// Time since an arbitrary start that never jumps, for measuring.
    [[nodiscard]] virtual Duration monotonic() const = 0;
};

} // namespace tallowby
