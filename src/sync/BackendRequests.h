#pragma once

#include "model/BlockDTO.h"
#include "sync/HttpClient.h"
#include "sync/SupabaseConfig.h"
#include "sync/SyncState.h"

#include <optional>
#include <variant>
#include <vector>

namespace tallowby {

/// Who asks: the bearer token, and the id of the anonymous user. Both open that user's rows.
struct BackendIdentity {
    QByteArray accessToken;
    QUuid userId;
};

/// Part of a table's rows, counted from 0; both ends are in it.
struct RowRange {
    std::int64_t first;
    std::int64_t last;
};

/// What goes over the wire to PostgREST and what comes back: arithmetic on texts, no network.
namespace backend {

/// At most so many rows come in one answer.
inline constexpr std::int64_t kRowLimit = 1000;
/// What a match of a meaning has to reach.
inline constexpr double kMatchThreshold = 0.7;

/// Those of every request: who asks by which key, JSON, and `x-tallowby-user-id`, by which the backend's policies tell
/// whose rows may be seen. Without an id for a request of nobody's.
[[nodiscard]] HttpRequest::Headers headers(const SupabaseConfig &config, const QByteArray &accessToken,
                                           std::optional<QUuid> userId);

/// All live rows of the user, the newest first, or those changed after `since`. With a range that part of them, in an
/// order that is the same for every part.
[[nodiscard]] HttpRequest fetchBlocks(const SupabaseConfig &config, const BackendIdentity &identity,
                                      std::optional<Timestamp> since, std::optional<RowRange> range = std::nullopt);
/// One row, in place of the one with its id. The reason when the fields cannot be written.
[[nodiscard]] std::variant<HttpRequest, QString>
upsertBlock(const SupabaseConfig &config, const BackendIdentity &identity, const BlockFields &fields);
[[nodiscard]] HttpRequest searchBlocks(const SupabaseConfig &config, const QByteArray &accessToken,
                                       std::optional<QUuid> userId, const std::vector<float> &embedding, int limit);

/// Whether the row has been taken. A page for people with a good status is not the backend's: some other server on the
/// way, such as a hotel's, has answered.
[[nodiscard]] bool isUpserted(const HttpResponse &response);
/// The rows of an answer, all of them checked like records from the disk, or why there are none.
[[nodiscard]] std::variant<std::vector<BlockDTO>, SyncFailure> rowsOf(const HttpAnswer &answer);
/// Whether an answer with so many rows may not be all.
[[nodiscard]] bool mayHaveMore(const HttpResponse &response, std::size_t rowCount);

/// An answer's body for the log: bounded, without the key, the user's id and what the database quotes of the row.
[[nodiscard]] QString loggable(const QByteArray &body, const SupabaseConfig &config, QUuid userId);

} // namespace backend

} // namespace tallowby
