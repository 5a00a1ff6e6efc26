#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <functional>

namespace tallowby::test {

/// Runs the event loop until `condition` holds. False when it does not within `limit`, which is only there to end a
/// broken test. The condition is asked after every event, and now and then for what sends none.
inline bool waitUntil(const std::function<bool()> &condition,
                      std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    const QDeadlineTimer deadline(limit);
    QTimer heartbeat;
    heartbeat.start(std::chrono::milliseconds(5));
    QEventLoop loop;
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace tallowby::test
