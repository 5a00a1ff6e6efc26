#include "platform/Waits.h"

#include <utility>

namespace tallowby {

struct Waits::Pending {
    std::coroutine_handle<> coroutine;
    bool isStarting = true;
    bool hasHappened = false;
};

Waits::Wait::Wait(std::shared_ptr<Registry> registry, Start start)
    : m_registry(std::move(registry))
    , m_start(std::move(start))
    , m_pending(std::make_shared<Pending>()) {}

bool Waits::Wait::await_suspend(std::coroutine_handle<> coroutine) {
    // Local copies: once the coroutine runs on, this object is gone.
    const auto pending = m_pending;
    pending->coroutine = coroutine;
    m_registry->push_back(pending);
    m_start([weakRegistry = std::weak_ptr(m_registry), weakPending = std::weak_ptr(pending)] {
        const auto registry = weakRegistry.lock();
        const auto waiting = weakPending.lock();
        if (!registry || !waiting || waiting->hasHappened) {
            return;
        }
        waiting->hasHappened = true;
        registry->remove(waiting);
        if (!waiting->isStarting) {
            waiting->coroutine.resume();
        }
    });
    pending->isStarting = false;
    return !pending->hasHappened;
}

bool Waits::Wait::await_resume() const {
    return m_pending->hasHappened;
}

Waits::Waits()
    : m_registry(std::make_shared<Registry>()) {}

Waits::~Waits() {
    // Taken out first: a coroutine that ends may end others.
    const Registry ending = std::exchange(*m_registry, {});
    m_registry.reset();
    for (const auto &pending : ending) {
        pending->coroutine.resume();
    }
}

Waits::Wait Waits::delay(Scheduler &scheduler, Scheduler::Duration duration) {
    // The handle lives in the start function, and with it in the coroutine's frame: it goes when the wait ends.
    return until([&scheduler, duration, call = std::make_shared<ScheduledCall>()](Done done) {
        *call = scheduler.after(duration, std::move(done));
    });
}

Waits::Wait Waits::until(Start start) {
    return {m_registry, std::move(start)};
}

} // namespace tallowby
