#pragma once

#include "platform/Scheduler.h"

#include <functional>

namespace tallowby {

class BlockStorage;

/// Gathers edits that come at the rate of typing into one save request. Main thread only.
class DebouncedSaver {
public:
    /// From the last edit to the request.
    static constexpr std::chrono::milliseconds kDebounceInterval{500};

    DebouncedSaver(Scheduler &scheduler, BlockStorage &storage);

    /// Runs the action half a second after the last call and asks the store to save. An action replaces the one that
    /// waits; a call without one leaves it waiting.
    void requestSave(std::function<void()> action = nullptr);
    /// Does at once what still waits, if anything does.
    void flush();

private:
    void saveNow();

    Scheduler &m_scheduler;
    BlockStorage &m_storage;
    std::function<void()> m_pendingAction;
    ScheduledCall m_saveCall;
};

} // namespace tallowby
