#pragma once

#include "platform/Scheduler.h"

#include <chrono>

namespace tallowby {

class BlockStorage;

/// Removes recordings that no live block has named for thirty days, those of a survey that was never sent among them.
/// Looks once, some time after the start: undo reaches no block that was gone before it, and one that goes after it is
/// found by a later start. When a file was first seen without a name is kept beside the media folder. Main thread only.
class UnusedRecordings {
public:
    static constexpr std::chrono::seconds kDelay{10};
    static constexpr std::chrono::days kGrace{30};

    /// Both must outlive it.
    UnusedRecordings(const BlockStorage &storage, Scheduler &scheduler);

private:
    void look();

    const BlockStorage &m_storage;
    Scheduler &m_scheduler;
    ScheduledCall m_call;
};

} // namespace tallowby
