#pragma once

#include "model/BlockDTO.h"
#include "platform/Scheduler.h"
#include "platform/Waits.h"
#include "sync/BackendRequests.h"
#include "sync/SyncState.h"

#include <QObject>

#include <QCoroTask>

#include <memory>
#include <optional>

namespace tallowby {

class BlockStorage;
class EmbeddingService;
class UserDefaults;

/// Mirrors the blocks of the storage to the backend for one anonymous user: pulls at the start and every 15 seconds,
/// pushes half a second after the last change. Of two versions of a block the one with the later `updatedAt` wins;
/// equal ones stay as they are here. Starts by itself when it is made. Main thread only.
class SyncEngine : public QObject {
    Q_OBJECT

public:
    /// From the last change to the push.
    static constexpr std::chrono::milliseconds kPushDelay{500};
    static constexpr std::chrono::seconds kPollInterval{15};
    /// How late a change made elsewhere may arrive at the backend and still be seen by the look back that follows a
    /// push of ours.
    static constexpr std::chrono::minutes kLateArrival{2};

    /// All of these must outlive the engine.
    SyncEngine(BlockStorage &storage, UserDefaults &defaults, Scheduler &scheduler, HttpClient &http,
               const EmbeddingService &embeddings, SupabaseConfig config);
    ~SyncEngine() override;

    [[nodiscard]] const SyncState &syncState() const { return m_syncState; }
    /// The error of the state is that nobody answered.
    [[nodiscard]] bool isUnreachable() const { return m_isUnreachable; }
    /// When the last initial sync began that succeeded, or the last push ended that did.
    [[nodiscard]] std::optional<Timestamp> lastSyncTime() const { return m_lastSyncTime; }
    /// How many blocks the push that runs has found; 0 after one that succeeded.
    [[nodiscard]] int pendingChanges() const { return m_pendingChanges; }
    /// None until configured and after disconnecting.
    [[nodiscard]] std::optional<QUuid> userId() const;

    [[nodiscard]] const SupabaseConfig &config() const { return m_config; }
    /// Of every request to the backend.
    [[nodiscard]] HttpRequest::Headers requestHeaders() const;

    /// Restores the user's id or makes one, and configures the engine for it.
    void autoAuthenticate();
    void configure(const QByteArray &accessToken, QUuid userId);
    /// Fetches all and merges it.
    QCoro::Task<> performInitialSync();
    /// Fetches what was changed elsewhere since `lastSyncTime` and merges it. Leaves the state alone.
    QCoro::Task<> pullRemoteChanges();
    /// Uploads each block that needs it, one after another. A call while one runs is made good for when that has ended:
    /// two versions of a block on their way at once might arrive in the wrong order.
    QCoro::Task<> pushLocalChanges();
    /// Starts the loop that pulls.
    void startRealtimeSubscription();
    /// Ends the loop, gives up what is on its way and forgets who the user is; the stored id stays.
    void disconnect();

    [[nodiscard]] QCoro::Task<SyncOutcome<std::vector<BlockDTO>>> fetchRemoteBlocks(BackendIdentity identity,
                                                                                    std::optional<Timestamp> since);
    /// Overwrites a block with a row; what is equal is not written. Leaves `needsSync` alone.
    void updateLocalBlock(Block &local, const BlockDTO &remote);
    [[nodiscard]] QCoro::Task<SyncOutcome<SyncDone>> upsertRemoteBlock(BlockPtr block, BackendIdentity identity);
    /// The rows whose embeddings are nearest, in the backend's order.
    [[nodiscard]] QCoro::Task<SyncOutcome<std::vector<BlockDTO>>> semanticSearch(std::vector<float> embedding,
                                                                                 int limit);

Q_SIGNALS:
    void syncStateChanged();
    void lastSyncTimeChanged();
    void pendingChangesChanged();
    /// Blocks have come or changed that were changed elsewhere.
    void remoteChangesMerged();

private:
    void setupSyncDebouncer();
    void requestPush();
    void flagChangedSinceUpload();
    [[nodiscard]] QCoro::Task<SyncOutcome<HttpAnswer>> exchange(HttpRequest request);
    [[nodiscard]] QCoro::Task<SyncOutcome<std::vector<BlockDTO>>>
    fetchInParts(BackendIdentity identity, std::optional<Timestamp> since, std::vector<BlockDTO> rows);
    QCoro::Task<> poll(std::weak_ptr<Waits> task);
    [[nodiscard]] std::optional<Timestamp> nextPullSince();
    /// True when the row was taken.
    bool merge(BlockDTO row);
    QCoro::Task<SyncOutcome<SyncDone>> pushBlock(BlockPtr block);
    void endPush();
    void setSyncState(const SyncState &state);
    void fail(const SyncFailure &failure);
    void setLastSyncTime(Timestamp time);
    void setPendingChanges(int count);
    [[nodiscard]] Timestamp now() const;

    BlockStorage &m_storage;
    UserDefaults &m_defaults;
    Scheduler &m_scheduler;
    HttpClient &m_http;
    const EmbeddingService &m_embeddings;
    const SupabaseConfig m_config;

    SyncState m_syncState;
    bool m_isUnreachable = false;
    std::optional<Timestamp> m_lastSyncTime;
    int m_pendingChanges = 0;
    std::optional<BackendIdentity> m_identity;

    bool m_isPushing = false;
    bool m_isPushWanted = false;
    /// What was changed elsewhere before this is known here.
    std::optional<Timestamp> m_seenUntil;
    /// How many pulls there were since a push moved `lastSyncTime`; none while it has not.
    std::optional<int> m_pullsSincePush;

    ScheduledCall m_start;
    ScheduledCall m_syncDebouncer;
    std::shared_ptr<Waits> m_realtimeTask;
    /// Whatever waits for an answer.
    std::unique_ptr<Waits> m_requests;
};

} // namespace tallowby
