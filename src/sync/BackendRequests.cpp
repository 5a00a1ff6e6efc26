#include "sync/BackendRequests.h"

#include "model/BlockRecordReader.h"
#include "model/BlockRecordWriter.h"
#include "model/TimestampCoding.h"
#include "model/json/JsonText.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QUrlQuery>

#include <cstring>

namespace tallowby::backend {

namespace {

constexpr QLatin1StringView kBlocksPath{"rest/v1/blocks"};
constexpr QLatin1StringView kSearchPath{"rest/v1/rpc/search_blocks"};
/// A thousand rows may have a picture each, which are in the rows.
constexpr qint64 kMaxRows = qint64{512} << 20;
constexpr qsizetype kLongestLoggedBody = 2000;

QUrl address(const SupabaseConfig &config, QLatin1StringView path) {
    QUrl url = config.projectURL;
    url.setPath(u'/' + path);
    return url;
}

QByteArray textOf(QUuid uuid) {
    const auto text = uuidText(uuid);
    return {text.data(), qsizetype(text.size())};
}

HttpRequest post(const SupabaseConfig &config, QLatin1StringView path, HttpRequest::Headers headers) {
    return {HttpRequest::Method::post, address(config, path), std::move(headers), {}};
}

void append(QByteArray &json, std::string_view text) {
    json.append(text.data(), qsizetype(text.size()));
}

} // namespace

HttpRequest::Headers headers(const SupabaseConfig &config, const QByteArray &accessToken, std::optional<QUuid> userId) {
    HttpRequest::Headers all{
        {QByteArrayLiteral("Authorization"), "Bearer " + accessToken},
        {QByteArrayLiteral("apikey"), config.anonymousKey},
        {QByteArrayLiteral("Content-Type"), QByteArrayLiteral("application/json")},
    };
    if (userId) {
        all.emplace_back(QByteArrayLiteral("x-tallowby-user-id"), textOf(*userId));
    }
    return all;
}

HttpRequest fetchBlocks(const SupabaseConfig &config, const BackendIdentity &identity, std::optional<Timestamp> since,
                        std::optional<RowRange> range) {
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("user_id"), QStringLiteral("eq.") + QLatin1StringView(textOf(identity.userId)));
    query.addQueryItem(QStringLiteral("deleted_at"), QStringLiteral("is.null"));
    // Rows of one instant have no order of their own: parts of them would overlap, and miss some.
    query.addQueryItem(QStringLiteral("order"),
                       range ? QStringLiteral("updated_at.desc,id.asc") : QStringLiteral("updated_at.desc"));
    if (since) {
        query.addQueryItem(QStringLiteral("updated_at"), QString::fromStdString("gt." + isoSeconds(*since)));
    }
    HttpRequest request;
    request.maxAnswer = kMaxRows;
    request.url = address(config, kBlocksPath);
    request.url.setQuery(query);
    request.headers = headers(config, identity.accessToken, identity.userId);
    if (range) {
        request.headers.emplace_back(QByteArrayLiteral("Range-Unit"), QByteArrayLiteral("items"));
        request.headers.emplace_back(QByteArrayLiteral("Range"),
                                     QByteArray::number(range->first) + '-' + QByteArray::number(range->last));
    }
    return request;
}

std::variant<HttpRequest, QString> upsertBlock(const SupabaseConfig &config, const BackendIdentity &identity,
                                               const BlockFields &fields) {
    // The table has no columns for these two.
    BlockRecordWriter writer(kWireTimestamps, {RecordKey::fontSize, RecordKey::textColor});
    if (auto refusal = writer.write(fields)) {
        return *std::move(refusal);
    }
    HttpRequest request = post(config, kBlocksPath, headers(config, identity.accessToken, identity.userId));
    request.headers.emplace_back(QByteArrayLiteral("Prefer"), QByteArrayLiteral("resolution=merge-duplicates"));
    append(request.body, writer.text());
    return request;
}

HttpRequest searchBlocks(const SupabaseConfig &config, const QByteArray &accessToken, std::optional<QUuid> userId,
                         const std::vector<float> &embedding, int limit) {
    HttpRequest request = post(config, kSearchPath, headers(config, accessToken, userId));
    QByteArray &body = request.body;
    body += "{\"query_embedding\":[";
    for (std::size_t i = 0; i < embedding.size(); ++i) {
        body += i == 0 ? "" : ",";
        append(body, JsonNumberText(embedding[i]).view());
    }
    body += "],\"match_threshold\":";
    append(body, JsonNumberText(kMatchThreshold).view());
    body += ",\"match_count\":" + QByteArray::number(limit) + '}';
    return request;
}

bool isUpserted(const HttpResponse &response) {
    const bool isPage = response.contentType.startsWith("text/html") && response.body.trimmed().startsWith('<');
    return response.isSuccess() && !isPage;
}

std::variant<std::vector<BlockDTO>, SyncFailure> rowsOf(const HttpAnswer &answer) {
    if (const auto *failure = std::get_if<HttpFailure>(&answer)) {
        return SyncFailure{failure->description, true};
    }
    const auto &response = std::get<HttpResponse>(answer);
    if (!response.isSuccess()) {
        return SyncFailure{description(SyncError::networkError)};
    }
    JsonBuffer document(std::size_t(response.body.size()));
    std::memcpy(document.data(), response.body.constData(), document.size());
    std::vector<BlockDTO> rows;
    const auto take = [&rows](BlockDTO row) { rows.push_back(std::move(row)); };
    if (const auto refusal = BlockRecordReader(kWireTimestamps, EmbeddingForm::numbersOrText).read(document, take)) {
        return SyncFailure{QStringLiteral("The answer cannot be read: ") + *refusal};
    }
    return rows;
}

bool mayHaveMore(const HttpResponse &response, std::size_t rowCount) {
    // "0-999/1500", "0-999/*" when nobody has counted, "*/*" for none at all.
    const QByteArray &range = response.contentRange;
    const auto slash = range.indexOf('/');
    const auto dash = range.indexOf('-');
    bool isLast = false;
    bool isTotal = false;
    const qint64 last = dash < 0 || dash > slash ? 0 : range.mid(dash + 1, slash - dash - 1).toLongLong(&isLast);
    const qint64 total = range.mid(slash + 1).toLongLong(&isTotal);
    if (isLast && isTotal) {
        return last + 1 < total;
    }
    return rowCount >= std::size_t(kRowLimit);
}

QString loggable(const QByteArray &body, const SupabaseConfig &config, QUuid userId) {
    static const QRegularExpression kQuotedRow(QStringLiteral(R"(Failing row contains \(.*)"));
    static const QString kGap = QStringLiteral("…");
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder.decode(body);
    if (decoder.hasError()) {
        return QStringLiteral("No body");
    }
    text.replace(kQuotedRow, QStringLiteral("Failing row contains (…)"));
    text.replace(QLatin1StringView(config.anonymousKey), kGap);
    text.replace(QLatin1StringView(textOf(userId)), kGap, Qt::CaseInsensitive);
    return text.size() > kLongestLoggedBody ? text.left(kLongestLoggedBody) + kGap : text;
}

} // namespace tallowby::backend
