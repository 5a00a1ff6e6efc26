#pragma once

#include "platform/Scheduler.h"

#include <coroutine>
#include <functional>
#include <list>
#include <memory>

namespace tallowby {

/// What the coroutines of one object wait for. When the object dies, its waits end at once with `false`, and the
/// coroutine returns without touching the object:
///
///     const bool isPast = co_await m_waits.delay(m_scheduler, 400ms);
///     if (!isPast) {
///         co_return;
///     }
///
/// The result gets a name before it is asked: g++ 12 lays out a coroutine's frame wrongly, and the coroutine crashes
/// when it is resumed, where a `co_await` stands in the condition of an `if` itself.
///
/// Make it the last member, so that it dies before whatever the waits hang on. One thread.
class Waits {
    struct Pending;
    using Registry = std::list<std::shared_ptr<Pending>>;

public:
    using Done = std::function<void()>;
    /// Starts what is waited for, which calls `done` once; it may do so before it returns, or long after the waiting
    /// object has gone.
    using Start = std::function<void(Done done)>;

    class Wait {
    public:
        [[nodiscard]] bool await_ready() const noexcept { return false; }
        bool await_suspend(std::coroutine_handle<> coroutine);
        /// True when it happened, false when the waiting object has gone.
        [[nodiscard]] bool await_resume() const;

    private:
        friend class Waits;
        Wait(std::shared_ptr<Registry> registry, Start start);

        std::shared_ptr<Registry> m_registry;
        Start m_start;
        std::shared_ptr<Pending> m_pending;
    };

    Waits();
    ~Waits();
    Waits(const Waits &) = delete;
    Waits &operator=(const Waits &) = delete;

    [[nodiscard]] Wait delay(Scheduler &scheduler, Scheduler::Duration duration);
    [[nodiscard]] Wait until(Start start);

private:
    std::shared_ptr<Registry> m_registry;
};

} // namespace tallowby
