#pragma once

#include "platform/Scheduler.h"

#include <QString>

#include <chrono>

namespace tallowby {

class BlockStorage;
class DataFolderLock;

/// Moves recordings to the desktop's trash that no live block has named for thirty days, those of a survey that was
/// never sent among them. A day counts when the program was used on it, and thirty must have gone by as well: a clock
/// that jumps ends nothing. Does nothing while blocks may exist that the store does not know.
///
/// Looks once, some time after the start: undo reaches no block that was gone before it, and one that goes after it is
/// found by a later start. What was seen is kept beside the media folder. Main thread only.
class UnusedRecordings {
public:
    static constexpr std::chrono::seconds kDelay{10};
    static constexpr std::chrono::days kGrace{30};

    /// All must outlive it.
    UnusedRecordings(const BlockStorage &storage, const DataFolderLock &lock, Scheduler &scheduler);

private:
    void look();
    [[nodiscard]] bool areAllBlocksKnown(const QString &folder) const;

    const BlockStorage &m_storage;
    const DataFolderLock &m_lock;
    Scheduler &m_scheduler;
    ScheduledCall m_call;
};

} // namespace tallowby
