#include "sync/SyncEngine.h"

#include "model/json/JsonText.h"
#include "platform/Log.h"
#include "platform/UserDefaults.h"
#include "storage/BlockStorage.h"
#include "sync/EmbeddingService.h"

#include <QSet>

#include <utility>

namespace tallowby {

namespace {

constexpr QLatin1StringView kUserIdKey{"tallowby_user_id"};
/// A row that is deleted between two parts moves all later ones up.
constexpr std::int64_t kPartOverlap = 50;
/// 0001-01-01, before which nothing was changed.
constexpr Timestamp kDistantPast{-63'113'904'000.0};

QString textOf(QUuid uuid) {
    const auto text = uuidText(uuid);
    return QLatin1StringView(text.data(), qsizetype(text.size()));
}

template <typename Result>
bool isAbandoned(const SyncOutcome<Result> &outcome) {
    return std::holds_alternative<SyncAbandoned>(outcome);
}

Timestamp earlier(Timestamp time, std::chrono::duration<double> by) {
    return {time.secondsSinceReference - by.count()};
}

} // namespace

SyncEngine::SyncEngine(BlockStorage &storage, UserDefaults &defaults, Scheduler &scheduler, HttpClient &http,
                       const EmbeddingService &embeddings, SupabaseConfig config)
    : m_storage(storage)
    , m_defaults(defaults)
    , m_scheduler(scheduler)
    , m_http(http)
    , m_embeddings(embeddings)
    , m_config(std::move(config))
    , m_requests(std::make_unique<Waits>()) {
    setupSyncDebouncer();
    autoAuthenticate();
}

SyncEngine::~SyncEngine() {
    m_storage.setSyncTrigger(nullptr);
}

std::optional<QUuid> SyncEngine::userId() const {
    return m_identity ? std::optional(m_identity->userId) : std::nullopt;
}

HttpRequest::Headers SyncEngine::requestHeaders() const {
    return backend::headers(m_config, m_identity ? m_identity->accessToken : m_config.anonymousKey, userId());
}

void SyncEngine::setupSyncDebouncer() {
    m_storage.setSyncTrigger([this] { requestPush(); });
}

void SyncEngine::requestPush() {
    m_syncDebouncer = m_scheduler.after(kPushDelay, [this] { pushLocalChanges(); });
}

void SyncEngine::autoAuthenticate() {
    const auto stored = m_defaults.string(kUserIdKey);
    const auto restored = stored ? uuidFromText(stored->toStdString()) : std::nullopt;
    const QUuid userId = restored.value_or(QUuid::createUuid());
    if (restored) {
        logLine(QString(u"[SyncEngine] 👤 Restored User ID: " + textOf(userId)));
    } else {
        m_defaults.setString(kUserIdKey, textOf(userId));
        logLine(QString(u"[SyncEngine] 🆕 Created new Anonymous User ID: " + textOf(userId)));
    }
    configure(m_config.anonymousKey, userId);
    m_storage.setCurrentUserId(userId);
    m_storage.sanitizeBlocks(userId);
    flagChangedSinceUpload();
}

/// What waits for its upload is known to one run of the program only; a change that was made offline in an earlier run
/// shows by its stamp.
void SyncEngine::flagChangedSinceUpload() {
    bool anyFlagged = false;
    for (const BlockPtr &block : m_storage.blocks()) {
        if (!block->needsSync() && block->syncedAt() && block->updatedAt() > *block->syncedAt()) {
            block->setNeedsSync(true);
            anyFlagged = true;
        }
    }
    if (anyFlagged) {
        requestPush();
    }
}

void SyncEngine::configure(const QByteArray &accessToken, QUuid userId) {
    m_identity = BackendIdentity{accessToken, userId};
    m_start = m_scheduler.after(std::chrono::milliseconds(0), [this] {
        startRealtimeSubscription();
        performInitialSync();
    });
}

void SyncEngine::disconnect() {
    m_start.cancel();
    m_syncDebouncer.cancel();
    m_realtimeTask.reset();
    m_identity.reset();
    m_isPushing = false;
    m_isPushWanted = false;
    // Those that wait end without touching anything.
    const auto ending = std::exchange(m_requests, std::make_unique<Waits>());
    setSyncState({SyncState::Kind::idle});
}

QCoro::Task<SyncOutcome<HttpAnswer>> SyncEngine::exchange(HttpRequest request) {
    const auto answer = std::make_shared<std::optional<HttpAnswer>>();
    std::unique_ptr<HttpExchange> running;
    const Waits::Start start = [this, &request, &running, answer](const Waits::Done &done) {
        running = m_http.send(std::move(request), [answer, done](HttpAnswer given) {
            *answer = std::move(given);
            done();
        });
    };
    const bool hasHappened = co_await m_requests->until(start);
    if (!hasHappened) {
        co_return SyncAbandoned();
    }
    co_return **answer;
}

QCoro::Task<SyncOutcome<std::vector<BlockDTO>>> SyncEngine::fetchRemoteBlocks(BackendIdentity identity,
                                                                              std::optional<Timestamp> since) {
    const auto outcome = co_await exchange(backend::fetchBlocks(m_config, identity, since));
    if (isAbandoned(outcome)) {
        co_return SyncAbandoned();
    }
    const auto &answer = std::get<HttpAnswer>(outcome);
    auto rows = backend::rowsOf(answer);
    if (auto *failure = std::get_if<SyncFailure>(&rows)) {
        co_return std::move(*failure);
    }
    auto &fetched = std::get<std::vector<BlockDTO>>(rows);
    if (!backend::mayHaveMore(std::get<HttpResponse>(answer), fetched.size())) {
        co_return std::move(fetched);
    }
    auto all = co_await fetchInParts(identity, since, std::move(fetched));
    co_return all;
}

/// The first answer says nothing about the order of rows of one instant, so the parts begin anew; what is known already
/// is left out.
QCoro::Task<SyncOutcome<std::vector<BlockDTO>>>
SyncEngine::fetchInParts(BackendIdentity identity, std::optional<Timestamp> since, std::vector<BlockDTO> rows) {
    QSet<QUuid> known;
    for (const BlockDTO &row : rows) {
        known.insert(row.id);
    }
    for (std::int64_t first = 0;;) {
        const RowRange range{first, first + backend::kRowLimit - 1};
        const auto outcome = co_await exchange(backend::fetchBlocks(m_config, identity, since, range));
        if (isAbandoned(outcome)) {
            co_return SyncAbandoned();
        }
        const auto &answer = std::get<HttpAnswer>(outcome);
        constexpr int kRangeNotSatisfiable = 416;
        const auto *response = std::get_if<HttpResponse>(&answer);
        if (response && response->status == kRangeNotSatisfiable) {
            break;
        }
        auto part = backend::rowsOf(answer);
        if (auto *failure = std::get_if<SyncFailure>(&part)) {
            co_return std::move(*failure);
        }
        auto &partRows = std::get<std::vector<BlockDTO>>(part);
        const auto count = std::int64_t(partRows.size());
        const bool hasMore = backend::mayHaveMore(*response, partRows.size()) && count <= backend::kRowLimit;
        for (BlockDTO &row : partRows) {
            if (!known.contains(row.id)) {
                known.insert(row.id);
                rows.push_back(std::move(row));
            }
        }
        if (!hasMore || count <= kPartOverlap) {
            break;
        }
        first += count - kPartOverlap;
    }
    co_return rows;
}

QCoro::Task<> SyncEngine::performInitialSync() {
    if (!m_identity) {
        co_return;
    }
    setSyncState({SyncState::Kind::syncing});
    const Timestamp start = now();
    auto outcome = co_await fetchRemoteBlocks(*m_identity, std::nullopt);
    if (isAbandoned(outcome)) {
        co_return;
    }
    if (const auto *failure = std::get_if<SyncFailure>(&outcome)) {
        if (failure->isUnreachable) {
            logLine(QString(u"[SyncEngine] Not connected: " + failure->description));
        }
        fail(*failure);
        co_return;
    }
    bool anyMerged = false;
    for (BlockDTO &row : std::get<std::vector<BlockDTO>>(outcome)) {
        anyMerged = merge(std::move(row)) || anyMerged;
    }
    m_storage.save();
    m_seenUntil = start;
    // The moment of the question, not of the answer: what was changed elsewhere in between is not in it.
    setLastSyncTime(start);
    setSyncState({SyncState::Kind::connected});
    if (anyMerged) {
        Q_EMIT remoteChangesMerged();
    }
}

/// A push moves `lastSyncTime` past changes that others have made shortly before and that have not been seen here. So
/// the second pull after a push looks back once to where that is certain.
std::optional<Timestamp> SyncEngine::nextPullSince() {
    if (m_pullsSincePush && ++*m_pullsSincePush >= 2) {
        return m_seenUntil ? earlier(*m_seenUntil, kLateArrival) : kDistantPast;
    }
    return m_lastSyncTime.value_or(kDistantPast);
}

QCoro::Task<> SyncEngine::pullRemoteChanges() {
    if (!m_identity) {
        co_return;
    }
    const Timestamp start = now();
    const auto since = nextPullSince();
    const bool isLookBack = m_pullsSincePush >= 2;
    auto outcome = co_await fetchRemoteBlocks(*m_identity, since);
    if (isAbandoned(outcome)) {
        co_return;
    }
    if (const auto *failure = std::get_if<SyncFailure>(&outcome)) {
        logLine(QString(u"[SyncEngine] Pull failed: " + failure->description));
        co_return;
    }
    bool anyMerged = false;
    for (BlockDTO &row : std::get<std::vector<BlockDTO>>(outcome)) {
        anyMerged = merge(std::move(row)) || anyMerged;
        m_storage.save();
    }
    if (isLookBack) {
        m_pullsSincePush.reset();
    }
    if (isLookBack || !m_pullsSincePush) {
        m_seenUntil = start;
    }
    if (anyMerged) {
        Q_EMIT remoteChangesMerged();
    }
}

bool SyncEngine::merge(BlockDTO row) {
    if (const BlockPtr local = m_storage.findById(row.id)) {
        const bool isNewer = row.updatedAt > local->updatedAt();
        if (isNewer) {
            updateLocalBlock(*local, row);
        }
        return isNewer;
    }
    const BlockPtr block = std::move(row).toBlock();
    block->setUserId(m_identity->userId);
    block->setSyncedAt(now());
    m_storage.insert(block);
    // It has just come from there. Sent back, it could replace a version that somebody makes meanwhile.
    block->setNeedsSync(false);
    return true;
}

void SyncEngine::updateLocalBlock(Block &local, const BlockDTO &remote) {
    BlockDTO copy = remote;
    const SharedBlockFields fields = std::move(copy).toFields();
    local.setXPosition(fields->xPosition);
    local.setYPosition(fields->yPosition);
    local.setWidth(fields->width);
    local.setHeight(fields->height);
    local.setZIndex(fields->zIndex);
    local.setBlockType(fields->blockType);
    local.setContent(fields->content);
    local.setRawText(fields->rawText);
    local.setTags(fields->tags);
    local.setEmbedding(fields->embedding);
    local.setIsTodo(fields->isTodo);
    local.setIsEvent(fields->isEvent);
    local.setDueDate(fields->dueDate);
    local.setUpdatedAt(fields->updatedAt);
    local.setSyncedAt(now());
    local.setDeletedAt(fields->deletedAt);
}

QCoro::Task<> SyncEngine::pushLocalChanges() {
    if (!m_identity) {
        co_return;
    }
    if (m_isPushing) {
        m_isPushWanted = true;
        co_return;
    }
    const std::vector<BlockPtr> changed = m_storage.fetch(&Block::needsSync);
    setPendingChanges(int(changed.size()));
    if (changed.empty()) {
        logLine(QString(u"[SyncEngine] ℹ️ No pending changes to push for userId: " + textOf(m_identity->userId)));
        co_return;
    }
    logLine(u"[SyncEngine] 🚀 Pushing %1 local changes to Supabase..."_qs.arg(changed.size()));
    setSyncState({SyncState::Kind::syncing});
    m_isPushing = true;
    for (const BlockPtr &block : changed) {
        const auto outcome = co_await pushBlock(block);
        if (isAbandoned(outcome)) {
            co_return;
        }
        if (const auto *failure = std::get_if<SyncFailure>(&outcome)) {
            logLine(QString(u"[SyncEngine] ❌ Push failed: " + failure->description));
            fail(*failure);
            endPush();
            co_return;
        }
    }
    m_storage.save();
    setPendingChanges(0);
    setLastSyncTime(now());
    m_pullsSincePush = 0;
    setSyncState({SyncState::Kind::connected});
    logLine(u"[SyncEngine] ✅ Successfully pushed %1 changes"_qs.arg(changed.size()));
    endPush();
}

void SyncEngine::endPush() {
    m_isPushing = false;
    if (std::exchange(m_isPushWanted, false)) {
        requestPush();
    }
}

QCoro::Task<SyncOutcome<SyncDone>> SyncEngine::pushBlock(BlockPtr block) {
    if (block->blockType() == BlockType::text && !block->rawTextOrEmpty().isEmpty()) {
        block->setEmbedding(m_embeddings.embedding(block->rawTextOrEmpty()));
    }
    const SharedBlockFields sent = block->fields();
    auto outcome = co_await upsertRemoteBlock(block, *m_identity);
    if (std::holds_alternative<SyncDone>(outcome)) {
        // What was changed while it was on its way is still to go.
        if (block->fields().constData() == sent.constData()) {
            block->setSyncedAt(now());
            block->setNeedsSync(false);
        }
    }
    co_return outcome;
}

QCoro::Task<SyncOutcome<SyncDone>> SyncEngine::upsertRemoteBlock(BlockPtr block, BackendIdentity identity) {
    auto request = backend::upsertBlock(m_config, identity, *block->fields());
    if (const auto *reason = std::get_if<QString>(&request)) {
        logLine(QString(u"[SyncEngine] ❌ Encoding error: " + *reason));
        co_return SyncFailure{*reason};
    }
    const auto outcome = co_await exchange(std::get<HttpRequest>(std::move(request)));
    if (isAbandoned(outcome)) {
        co_return SyncAbandoned();
    }
    const auto &answer = std::get<HttpAnswer>(outcome);
    if (const auto *failure = std::get_if<HttpFailure>(&answer)) {
        co_return SyncFailure{failure->description, true};
    }
    const auto &response = std::get<HttpResponse>(answer);
    if (!backend::isUpserted(response)) {
        logLine(QString(u"[SyncEngine] ❌ Upsert Error Status %1: "_qs.arg(response.status) +
                        backend::loggable(response.body, m_config, identity.userId)));
        co_return SyncFailure{description(SyncError::networkError)};
    }
    co_return SyncDone();
}

QCoro::Task<SyncOutcome<std::vector<BlockDTO>>> SyncEngine::semanticSearch(std::vector<float> embedding, int limit) {
    if (!m_identity) {
        co_return SyncFailure{description(SyncError::authenticationRequired)};
    }
    const auto outcome = co_await exchange(
        backend::searchBlocks(m_config, m_identity->accessToken, m_identity->userId, embedding, limit));
    if (isAbandoned(outcome)) {
        co_return SyncAbandoned();
    }
    auto rows = backend::rowsOf(std::get<HttpAnswer>(outcome));
    if (auto *failure = std::get_if<SyncFailure>(&rows)) {
        co_return std::move(*failure);
    }
    co_return std::get<std::vector<BlockDTO>>(std::move(rows));
}

void SyncEngine::startRealtimeSubscription() {
    if (!m_identity) {
        return;
    }
    m_realtimeTask = std::make_shared<Waits>();
    poll(m_realtimeTask);
}

QCoro::Task<> SyncEngine::poll(std::weak_ptr<Waits> task) {
    // The task goes with the engine, and when another loop takes the place of this one; nothing here may keep it.
    while (!task.expired()) {
        Waits::Wait wait = task.lock()->delay(m_scheduler, kPollInterval);
        const bool isTime = co_await wait;
        if (!isTime) {
            co_return;
        }
        co_await pullRemoteChanges();
    }
}

void SyncEngine::setSyncState(const SyncState &state) {
    if (m_syncState != state) {
        m_syncState = state;
        Q_EMIT syncStateChanged();
    }
}

void SyncEngine::fail(const SyncFailure &failure) {
    m_isUnreachable = failure.isUnreachable;
    setSyncState({SyncState::Kind::error, failure.description});
}

void SyncEngine::setLastSyncTime(Timestamp time) {
    if (m_lastSyncTime != time) {
        m_lastSyncTime = time;
        Q_EMIT lastSyncTimeChanged();
    }
}

void SyncEngine::setPendingChanges(int count) {
    if (m_pendingChanges != count) {
        m_pendingChanges = count;
        Q_EMIT pendingChangesChanged();
    }
}

Timestamp SyncEngine::now() const {
    return Timestamp::from(m_scheduler.now());
}

} // namespace tallowby
