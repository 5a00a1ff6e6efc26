#include "storage/BlockStorage.h"

#include "platform/ApplicationSupport.h"
#include "platform/Log.h"
#include "storage/BlockFileReader.h"
#include "storage/BlockFileWriter.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

constexpr QLatin1StringView kFileName("blocks.json");

/// The name that an unreadable file is kept under, with the time in UTC.
QString unreadableName(const QString &filePath, Scheduler::WallClock::time_point now) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(now.time_since_epoch()).count();
    return QFileInfo(filePath).fileName() + u".unreadable-" +
           QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(QStringLiteral("yyyyMMdd-HHmmss"));
}

} // namespace

BlockStorage::BlockStorage(Scheduler &scheduler, std::optional<QString> filePath)
    : m_scheduler(scheduler)
    , m_saveQueue("com.tallowby.storage.save") {
    if (filePath) {
        m_writer = std::make_unique<BlockFileWriter>(*filePath);
        loadFromDisk(*filePath);
    }
}

BlockStorage::~BlockStorage() {
    // Others may hold blocks for longer than the store lives.
    for (const auto &block : m_blocks) {
        block->setChangeListener(nullptr, 0);
    }
}

std::optional<QString> BlockStorage::defaultFilePath() {
    const auto folder = applicationSupportFolder();
    return folder ? std::optional(*folder + u'/' + kFileName) : std::nullopt;
}

void BlockStorage::loadFromDisk(const QString &filePath) {
    auto content = readBlockFile(filePath);
    if (const auto *unreadable = std::get_if<UnreadableBlockFile>(&content)) {
        logLine(QString(u"[BlockStorage] ❌ Load failed: " + unreadable->reason));
        m_writer->setAsideFirst(unreadableName(filePath, m_scheduler.now()));
        return;
    }
    auto *const loaded = std::get_if<LoadedBlocks>(&content);
    if (!loaded) {
        return;
    }
    m_blocks.reserve(loaded->records.size());
    m_places.reserve(qsizetype(loaded->records.size()));
    for (const auto &record : loaded->records) {
        hold(std::make_shared<Block>(record));
    }
    m_pages = RecordPages(std::move(loaded->records));
    logLine(u"[BlockStorage] 📂 Loaded %1 active blocks from disk (Purged %2 ghosts)"_qs.arg(m_blocks.size())
                .arg(loaded->purgedCount));
    if (loaded->purgedCount > 0) {
        save();
    }
}

void BlockStorage::setCurrentUserId(std::optional<QUuid> userId) {
    if (m_currentUserId != userId) {
        m_currentUserId = userId;
        Q_EMIT currentUserIdChanged();
    }
}

void BlockStorage::setSyncTrigger(std::function<void()> trigger) {
    m_syncTrigger = std::move(trigger);
}

void BlockStorage::insert(const BlockPtr &block) {
    block->setNeedsSync(true);
    if (block->changeListener() != this) {
        m_pages.markChanged(m_blocks.size());
        hold(block);
        Q_EMIT blocksChanged();
    }
    save();
}

void BlockStorage::hold(BlockPtr block) {
    const std::size_t place = m_blocks.size();
    block->setChangeListener(this, place);
    if (!m_places.contains(block->id())) {
        m_places.insert(block->id(), place);
    }
    m_blocks.push_back(std::move(block));
}

void BlockStorage::blockRecordChanged(Block &block) {
    m_pages.markChanged(block.placeInStore());
}

void BlockStorage::save() {
    m_saveCall = m_scheduler.after(kSaveDelay, [this] { writeSnapshot(); });
    if (m_syncTrigger) {
        m_syncTrigger();
    }
}

void BlockStorage::writeSnapshot() {
    if (!m_writer) {
        return;
    }
    m_saveQueue.async([writer = m_writer.get(), count = m_blocks.size(), records = m_pages.snapshot(m_blocks)] {
        if (const auto error = writer->write(records)) {
            logLine(QString(u"[BlockStorage] ❌ Background save failed: " + *error));
        } else {
            logLine(u"[BlockStorage] 💾 Persisted %1 blocks to disk on background thread"_qs.arg(count));
        }
    });
}

std::vector<BlockPtr> BlockStorage::fetch(const std::function<bool(const Block &)> &predicate) const {
    std::vector<BlockPtr> found;
    std::ranges::copy_if(m_blocks, std::back_inserter(found),
                         [&predicate](const BlockPtr &block) { return predicate(*block); });
    return found;
}

BlockPtr BlockStorage::findById(QUuid id) const {
    const auto found = m_places.find(id);
    return found == m_places.end() ? nullptr : m_blocks[*found];
}

void BlockStorage::sanitizeBlocks(QUuid userId) {
    bool anyChanged = false;
    for (const auto &block : m_blocks) {
        const bool isForeign = block->userId() != userId;
        const bool isToBeFlagged = (isForeign || !block->syncedAt()) && !block->needsSync();
        block->setUserId(userId);
        if (isToBeFlagged) {
            block->setNeedsSync(true);
        }
        anyChanged = anyChanged || isForeign || isToBeFlagged;
    }
    if (!anyChanged) {
        return;
    }
    save();
    const auto flagged = std::ranges::count_if(m_blocks, &Block::needsSync,
                                               [](const BlockPtr &block) -> const Block & { return *block; });
    logLine(u"[BlockStorage] 🧹 Sanitized and flagged %1 blocks for sync"_qs.arg(flagged));
}

} // namespace tallowby
