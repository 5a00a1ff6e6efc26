#pragma once

#include "model/Block.h"
#include "platform/Scheduler.h"
#include "storage/RecordPages.h"
#include "storage/SerialQueue.h"

#include <QHash>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tallowby {

class BlockFileWriter;

/// The one local store of all blocks, mirrored to one JSON file. Main thread only; encoding and writing happen on the
/// serial queue "com.tallowby.storage.save" and see immutable snapshots, never live blocks. Owns every block for the
/// life of the store: a deleted block stays, with its `deletedAt`, until the next start leaves it out.
class BlockStorage : public QObject, private BlockChangeListener {
    Q_OBJECT

public:
    /// From the last request to the write.
    static constexpr std::chrono::seconds kSaveDelay{1};

    /// Loads the file at `filePath`; with no path nothing is loaded and nothing is written.
    BlockStorage(Scheduler &scheduler, std::optional<QString> filePath);
    /// Lets a write that has reached the queue finish; a request that still waits is dropped.
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
    [[nodiscard]] std::vector<BlockPtr> fetch(const std::function<bool(const Block &)> &predicate) const;
    /// The first block with that id, or null.
    [[nodiscard]] BlockPtr findById(QUuid id) const;
    /// Makes every block the user's own and flags those never uploaded.
    void sanitizeBlocks(QUuid userId);

Q_SIGNALS:
    void blocksChanged();
    void currentUserIdChanged();

private:
    void blockRecordChanged(Block &block) override;
    void loadFromDisk(const QString &filePath);
    void hold(BlockPtr block);
    void writeSnapshot();

    Scheduler &m_scheduler;
    std::vector<BlockPtr> m_blocks;
    /// From the id to the first place that has it.
    QHash<QUuid, std::size_t> m_places;
    RecordPages m_pages;
    std::optional<QUuid> m_currentUserId;
    std::function<void()> m_syncTrigger;
    ScheduledCall m_saveCall;
    /// Touched on the queue only, once it runs.
    std::unique_ptr<BlockFileWriter> m_writer;
    SerialQueue m_saveQueue;
};

} // namespace tallowby
