#pragma once

#include "model/Block.h"
#include "platform/Scheduler.h"
#include "storage/RecordPages.h"
#include "storage/SaveStatus.h"
#include "storage/SerialQueue.h"
#include "storage/file/BlockFile.h"

#include <QHash>
#include <QObject>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace tallowby {

/// The one local store of all blocks, mirrored to one JSON file. Main thread only; encoding and writing happen on the
/// serial queue "com.tallowby.storage.save" and see immutable snapshots, never live blocks. Owns every block for the
/// life of the store: a deleted block stays, with its `deletedAt`, until the next start leaves it out.
///
/// A write that fails is tried again until one succeeds. A file that cannot be reached is not written to; it is read
/// again until that succeeds, and then joined with what was made meanwhile. A file that somebody else has put in place
/// is joined, block by block, before anything is written.
class BlockStorage : public QObject, private BlockChangeListener {
    Q_OBJECT

public:
    /// From the last request to the write.
    static constexpr std::chrono::seconds kSaveDelay{1};
    /// After a failure; each further one doubles the wait until the longest is reached.
    static constexpr std::chrono::seconds kFirstRetryDelay{2};
    static constexpr std::chrono::seconds kMaxRetryDelay{60};

    /// Loads the file at `filePath`; with no path nothing is loaded and nothing is written.
    BlockStorage(Scheduler &scheduler, std::optional<QString> filePath);
    /// Writes what the file does not have yet.
    ~BlockStorage() override;

    /// `blocks.json` in the program's own data folder.
    [[nodiscard]] static std::optional<QString> defaultFilePath();

    /// Live and soft-deleted blocks, in order of insertion or of the file.
    [[nodiscard]] const std::vector<BlockPtr> &blocks() const { return m_blocks; }

    [[nodiscard]] std::optional<QUuid> currentUserId() const { return m_currentUserId; }
    void setCurrentUserId(std::optional<QUuid> userId);
    /// Called at every save request, at once.
    void setSyncTrigger(std::function<void()> trigger);

    /// Adds a block, marks it dirty and requests a save. A block that the store holds already is not added again.
    void insert(const BlockPtr &block);
    /// Requests a write one second from now; an earlier request that still waits is replaced.
    void save();
    /// Writes what the file does not have yet, at once, and waits for it: for the end of the program. While the file
    /// itself cannot be reached, that is kept beside it until the next start.
    void saveNow();
    /// How it stands with the file.
    [[nodiscard]] SaveStatus &status() { return m_status; }
    /// False while blocks may exist that are not in memory: the file was not read, or not whole.
    [[nodiscard]] bool isComplete() const;
    /// Where the file is; none for a store that lives in memory only.
    [[nodiscard]] const std::optional<QString> &filePath() const { return m_filePath; }
    /// Reads the file again that could not be read. On success its blocks are joined with those in memory.
    void readKeptAside();
    [[nodiscard]] std::vector<BlockPtr> fetch(const std::function<bool(const Block &)> &predicate) const;
    /// The first block with that id, or null.
    [[nodiscard]] BlockPtr findById(QUuid id) const;
    /// Makes every block the user's own and flags those never uploaded.
    void sanitizeBlocks(QUuid userId);

Q_SIGNALS:
    void blocksChanged();
    void currentUserIdChanged();
    /// Blocks have come, changed or gone that a file brought after the start.
    void blocksMerged();
    /// `readKeptAside` was in vain.
    void keptAsideUnreadable(const QString &reason);

private:
    using Answer = std::function<void()>;

    void blockRecordChanged(Block &block) override;
    void load();
    void handleLoaded(BlockFileContent content);
    void takeFirst(LoadedBlocks loaded);
    void hold(BlockPtr block);
    void merge(const std::vector<SharedBlockFields> &records);
    void writeSnapshot();
    void handleWritten(std::uint64_t revision, BlockFile::Outcome outcome);
    void retry(void (BlockStorage::*attempt)());
    void writeUnjoined();
    void mergeUnjoined();
    [[nodiscard]] QString unjoinedPath() const;
    /// Runs `job` on the queue and its answer on this thread. One at a time.
    void runOnQueue(std::function<Answer()> job);
    void takeAnswer();
    void finishJob();
    [[nodiscard]] QString timeMark() const;

    Scheduler &m_scheduler;
    std::vector<BlockPtr> m_blocks;
    /// From the id to the first place that has it.
    QHash<QUuid, std::size_t> m_places;
    RecordPages m_pages;
    std::optional<QUuid> m_currentUserId;
    std::function<void()> m_syncTrigger;
    ScheduledCall m_saveCall;
    ScheduledCall m_retryCall;
    Scheduler::Duration m_retryDelay = kFirstRetryDelay;
    SaveStatus m_status;

    /// Counts the changes; the file is behind while it has another count.
    std::uint64_t m_revision = 0;
    std::uint64_t m_writtenRevision = 0;
    bool m_isLoaded = false;
    bool m_isJobRunning = false;
    /// A request came while a job was running: the state of then is written when it ends, and none in between.
    bool m_isWriteWanted = false;
    bool m_isUnjoinedMerged = false;

    const std::optional<QString> m_filePath;
    /// Touched by the running job only, or while there is none.
    std::unique_ptr<BlockFile> m_file;
    std::mutex m_answerMutex;
    Answer m_answer;
    SerialQueue m_saveQueue;
};

} // namespace tallowby
