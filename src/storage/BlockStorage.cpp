#include "storage/BlockStorage.h"

#include "platform/ApplicationSupport.h"
#include "platform/Log.h"
#include "storage/BlockMerge.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

constexpr QLatin1StringView kFileName("blocks.json");

/// Whoever else writes the file at the same time must not keep the end of the program waiting for ever.
constexpr int kMaxAttemptsAtEnd = 5;

/// A name beside the file that is free; `-2` and so on when it is taken.
QString freeName(const QString &filePath, const QString &ending) {
    const QFileInfo file(filePath);
    QString name = file.fileName() + ending;
    for (int next = 2; QFileInfo::exists(file.absoluteDir().filePath(name)); ++next) {
        name = file.fileName() + ending + u'-' + QString::number(next);
    }
    return name;
}

} // namespace

BlockStorage::BlockStorage(Scheduler &scheduler, std::optional<QString> filePath)
    : m_scheduler(scheduler)
    , m_filePath(std::move(filePath))
    , m_saveQueue("com.tallowby.storage.save") {
    if (m_filePath) {
        m_file = std::make_unique<BlockFile>(*m_filePath);
        handleLoaded(m_file->load(DeletedRecords::leaveOut));
    }
}

BlockStorage::~BlockStorage() {
    saveNow();
    // Others may hold blocks for longer than the store lives.
    for (const auto &block : m_blocks) {
        block->setChangeListener(nullptr, 0);
    }
}

std::optional<QString> BlockStorage::defaultFilePath() {
    const auto folder = applicationSupportFolder();
    return folder ? std::optional(*folder + u'/' + kFileName) : std::nullopt;
}

void BlockStorage::load() {
    runOnQueue([this]() -> Answer {
        return [this, content = m_file->load(DeletedRecords::leaveOut)]() mutable { handleLoaded(std::move(content)); };
    });
}

void BlockStorage::handleLoaded(BlockFileContent content) {
    m_retryCall.cancel();
    if (const auto *problem = std::get_if<FileProblem>(&content)) {
        logLine(QString(u"[BlockStorage] ❌ Load failed: " + problem->description));
        m_status.setReadProblem(*problem);
        retry(&BlockStorage::load);
        return;
    }
    m_isLoaded = true;
    m_retryDelay = kFirstRetryDelay;
    m_status.setReadProblem(std::nullopt);
    if (const auto *unreadable = std::get_if<UnreadableBlockFile>(&content)) {
        logLine(QString(u"[BlockStorage] ❌ Load failed: " + unreadable->reason));
        const QString name = freeName(*m_filePath, u".unreadable-" + timeMark());
        m_file->setAsideFirst(name);
        m_status.setKeptAs(name);
    } else if (auto *loaded = std::get_if<LoadedBlocks>(&content)) {
        takeFirst(std::move(*loaded));
    }
    mergeUnjoined();
    if (m_revision != m_writtenRevision && !m_saveCall.isPending()) {
        save();
    }
}

/// What the file held at the start, or when it could be reached at last.
void BlockStorage::takeFirst(LoadedBlocks loaded) {
    const std::size_t count = loaded.records.size();
    const bool isFirst = m_blocks.empty();
    if (isFirst) {
        m_blocks.reserve(count);
        m_places.reserve(qsizetype(count));
        for (const auto &record : loaded.records) {
            hold(std::make_shared<Block>(record));
        }
        m_pages = RecordPages(std::move(loaded.records));
        m_writtenRevision = m_revision;
    } else {
        merge(loaded.records);
    }
    logLine(
        u"[BlockStorage] 📂 Loaded %1 active blocks from disk (Purged %2 ghosts)"_qs.arg(count).arg(loaded.purgedCount));
    if (loaded.purgedCount > 0) {
        ++m_revision;
    } else if (isFirst) {
        m_file->setHeld(m_pages.snapshot(m_blocks));
    }
}

void BlockStorage::merge(const std::vector<SharedBlockFields> &records) {
    for (const auto &record : records) {
        if (const BlockPtr block = findById(record->id)) {
            if (isLater(*record, *block->fields())) {
                takeOver(*block, *record);
                block->setNeedsSync(isUnsent(*record));
            }
        } else {
            const auto added = std::make_shared<Block>(record);
            if (m_currentUserId) {
                added->setUserId(*m_currentUserId);
            }
            added->setNeedsSync(isUnsent(*record));
            m_pages.markChanged(m_blocks.size());
            hold(added);
        }
    }
    Q_EMIT blocksChanged();
    Q_EMIT blocksMerged();
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
    ++m_revision;
    const std::size_t place = m_blocks.size();
    block->setChangeListener(this, place);
    if (!m_places.contains(block->id())) {
        m_places.insert(block->id(), place);
    }
    m_blocks.push_back(std::move(block));
}

void BlockStorage::blockRecordChanged(Block &block) {
    ++m_revision;
    m_pages.markChanged(block.placeInStore());
}

void BlockStorage::save() {
    m_saveCall = m_scheduler.after(kSaveDelay, [this] { writeSnapshot(); });
    if (m_syncTrigger) {
        m_syncTrigger();
    }
}

void BlockStorage::writeSnapshot() {
    if (m_isJobRunning) {
        m_isWriteWanted = true;
        return;
    }
    if (!m_isLoaded || m_revision == m_writtenRevision) {
        return;
    }
    runOnQueue([this, revision = m_revision, count = m_blocks.size(), records = m_pages.snapshot(m_blocks),
                mark = timeMark()]() -> Answer {
        auto outcome = m_file->write(records, mark);
        if (const auto *problem = std::get_if<FileProblem>(&outcome)) {
            logLine(QString(u"[BlockStorage] ❌ Background save failed: " + problem->description));
        } else if (const auto *change = std::get_if<BlockFile::Change>(&outcome);
                   change && *change == BlockFile::Change::written) {
            logLine(u"[BlockStorage] 💾 Persisted %1 blocks to disk on background thread"_qs.arg(count));
        }
        return
            [this, revision, outcome = std::move(outcome)]() mutable { handleWritten(revision, std::move(outcome)); };
    });
}

void BlockStorage::handleWritten(std::uint64_t revision, BlockFile::Outcome outcome) {
    if (const auto *problem = std::get_if<FileProblem>(&outcome)) {
        m_status.setSaveProblem(*problem);
        retry(&BlockStorage::writeSnapshot);
        return;
    }
    m_retryCall.cancel();
    m_retryDelay = kFirstRetryDelay;
    m_status.setSaveProblem(std::nullopt);
    if (const auto *other = std::get_if<LoadedBlocks>(&outcome)) {
        logLine(u"[BlockStorage] 🔀 Joining %1 blocks of a file that was put in place meanwhile"_qs.arg(
            other->records.size()));
        merge(other->records);
        save();
        return;
    }
    m_writtenRevision = revision;
    if (std::exchange(m_isUnjoinedMerged, false)) {
        QFile::remove(unjoinedPath());
    }
}

void BlockStorage::retry(void (BlockStorage::*attempt)()) {
    if (m_retryCall.isPending()) {
        return;
    }
    m_retryCall = m_scheduler.after(m_retryDelay, [this, attempt] { (this->*attempt)(); });
    m_retryDelay = std::min<Scheduler::Duration>(2 * m_retryDelay, kMaxRetryDelay);
}

void BlockStorage::saveNow() {
    if (!m_file) {
        return;
    }
    m_saveCall.cancel();
    finishJob();
    if (!m_isLoaded && m_revision != m_writtenRevision) {
        load();
        finishJob();
        if (!m_isLoaded) {
            writeUnjoined();
            return;
        }
    }
    for (int attempt = 0; attempt < kMaxAttemptsAtEnd && m_revision != m_writtenRevision; ++attempt) {
        writeSnapshot();
        finishJob();
        m_saveCall.cancel();
        if (m_status.state() == SaveStatus::State::notSaved) {
            return; // What asks for another attempt waits already, should the program go on.
        }
    }
}

/// The file could not be reached all the while, so what was made meanwhile has no place in it before the next start.
void BlockStorage::writeUnjoined() {
    BlockFile beside(unjoinedPath());
    auto outcome = beside.write(m_pages.snapshot(m_blocks), timeMark());
    if (const auto *earlier = std::get_if<LoadedBlocks>(&outcome)) {
        merge(earlier->records);
        outcome = beside.write(m_pages.snapshot(m_blocks), timeMark());
    }
    if (const auto *problem = std::get_if<FileProblem>(&outcome)) {
        logLine(QString(u"[BlockStorage] ❌ Background save failed: " + problem->description));
        return;
    }
    logLine(u"[BlockStorage] 🗄️ Kept the new blocks beside the file until it can be read");
}

void BlockStorage::mergeUnjoined() {
    const BlockFileContent content = readBlockFile(unjoinedPath(), DeletedRecords::keep);
    if (const auto *loaded = std::get_if<LoadedBlocks>(&content)) {
        merge(loaded->records);
        m_isUnjoinedMerged = true;
        ++m_revision; // Even with nothing new in it, it goes once the file is known to be good.
    }
}

QString BlockStorage::unjoinedPath() const {
    return *m_filePath + u".unjoined";
}

bool BlockStorage::isComplete() const {
    return m_isLoaded && m_status.keptAs().isEmpty();
}

void BlockStorage::readKeptAside() {
    if (m_isJobRunning || m_status.keptAs().isEmpty()) {
        return;
    }
    runOnQueue([this]() -> Answer {
        return [this, content = m_file->loadSetAside()] {
            if (const auto *loaded = std::get_if<LoadedBlocks>(&content)) {
                m_status.setKeptAs({});
                merge(loaded->records);
                save();
            } else if (const auto *unreadable = std::get_if<UnreadableBlockFile>(&content)) {
                Q_EMIT keptAsideUnreadable(unreadable->reason);
            } else if (const auto *problem = std::get_if<FileProblem>(&content)) {
                Q_EMIT keptAsideUnreadable(problem->description);
            } else {
                Q_EMIT keptAsideUnreadable(tr("the file is not there any more"));
            }
        };
    });
}

void BlockStorage::runOnQueue(std::function<Answer()> job) {
    m_isJobRunning = true;
    m_saveQueue.async([this, job = std::move(job)] {
        Answer answer = job();
        {
            const std::lock_guard lock(m_answerMutex);
            m_answer = std::move(answer);
        }
        QMetaObject::invokeMethod(this, &BlockStorage::takeAnswer, Qt::QueuedConnection);
    });
}

/// Comes by the event loop, unless somebody has waited for the job.
void BlockStorage::takeAnswer() {
    Answer answer;
    {
        const std::lock_guard lock(m_answerMutex);
        answer = std::exchange(m_answer, nullptr);
    }
    if (!answer) {
        return;
    }
    m_isJobRunning = false;
    answer();
    if (std::exchange(m_isWriteWanted, false)) {
        writeSnapshot();
    }
}

void BlockStorage::finishJob() {
    while (m_isJobRunning) {
        m_saveQueue.finish();
        takeAnswer();
    }
}

/// In UTC, for the names of files that are kept.
QString BlockStorage::timeMark() const {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(m_scheduler.now().time_since_epoch()).count();
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(u"yyyyMMdd-HHmmss"_qs);
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
