#include "sync/FakeBackend.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUrlQuery>

#include <algorithm>
#include <utility>

namespace tallowby::test {

namespace {

struct PendingExchange final : HttpExchange {
    ScheduledCall call;
};

qint64 stampOf(const QJsonObject &row) {
    return QDateTime::fromString(row.value(QStringLiteral("updated_at")).toString(), Qt::ISODateWithMs)
        .toMSecsSinceEpoch();
}

} // namespace

std::optional<QByteArray> headerOf(const HttpRequest &request, const QByteArray &name) {
    const auto found = std::ranges::find_if(
        request.headers, [&name](const auto &header) { return header.first.toLower() == name.toLower(); });
    return found == request.headers.end() ? std::nullopt : std::optional(found->second);
}

std::unique_ptr<HttpExchange> FakeBackend::send(HttpRequest request, Done done) {
    const Fate given = fate ? fate(request) : Fate();
    requests.push_back(request);
    // The server's part of it happens half way.
    auto exchange = std::make_unique<PendingExchange>();
    const auto half = given.delay / 2;
    PendingExchange *const pending = exchange.get();
    pending->call = m_scheduler.after(half, [this, pending, half, given, request = std::move(request),
                                             done = std::move(done)]() mutable {
        HttpAnswer answer = HttpFailure{QStringLiteral("The server closed the connection")};
        if (given.answer) {
            answer = *given.answer;
        } else if (!given.isLost) {
            const HttpResponse response = serve(request);
            answer = given.isAnswerLost ? answer : HttpAnswer(response);
        }
        pending->call = m_scheduler.after(half, [answer = std::move(answer), done = std::move(done)] { done(answer); });
    });
    return exchange;
}

HttpResponse FakeBackend::serve(const HttpRequest &request) {
    if (request.url.path() == u"/rest/v1/rpc/search_blocks") {
        return {200, "application/json", {}, searchAnswer};
    }
    return request.method == HttpRequest::Method::get ? select(request) : upsert(request);
}

HttpResponse FakeBackend::select(const HttpRequest &request) const {
    const QUrlQuery query(request.url);
    const QString owner = query.queryItemValue(QStringLiteral("user_id")).sliced(3);
    const QString after = query.queryItemValue(QStringLiteral("updated_at"));
    const qint64 since = after.isEmpty() ? std::numeric_limits<qint64>::min()
                                         : QDateTime::fromString(after.sliced(3), Qt::ISODate).toMSecsSinceEpoch();
    std::vector<QJsonObject> found;
    for (const QJsonObject &row : rows) {
        const bool isLive = row.value(QStringLiteral("deleted_at")).isUndefined();
        const bool isOwned = row.value(QStringLiteral("user_id")).toString() == owner;
        if (isLive && isOwned && stampOf(row) > since && headerOf(request, "x-tallowby-user-id") == owner.toLatin1()) {
            found.push_back(row);
        }
    }
    // Rows of one instant come in no order of their own, unless one is asked for.
    const bool isStable = query.queryItemValue(QStringLiteral("order")).endsWith(u"id.asc");
    if (!isStable) {
        std::ranges::reverse(found);
    }
    std::ranges::stable_sort(found, std::greater(), stampOf);
    std::size_t first = 0;
    std::size_t count = std::size_t(rowLimit);
    if (const auto range = headerOf(request, "Range")) {
        first = range->split('-').at(0).toULongLong();
        count = std::min(count, std::size_t(range->split('-').at(1).toULongLong() - first + 1));
    }
    QJsonArray part;
    for (std::size_t i = first; i < found.size() && i < first + count; ++i) {
        part << found[i];
    }
    const QByteArray range = part.isEmpty() ? QByteArray("*/*")
                                            : QByteArray::number(qulonglong(first)) + '-' +
                                                  QByteArray::number(qlonglong(first) + part.size() - 1) + "/*";
    return {200, "application/json; charset=utf-8", range, QJsonDocument(part).toJson(QJsonDocument::Compact)};
}

HttpResponse FakeBackend::upsert(const HttpRequest &request) {
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    const QString id = body.value(QStringLiteral("id")).toString();
    QJsonObject &row = rows[id];
    if (keepsNewerRows && !row.isEmpty() && stampOf(body) < stampOf(row)) {
        return {200, {}, {}, {}};
    }
    row = body;
    return {201, {}, {}, {}};
}

QStringList FakeBackend::takeRequestLines() {
    QStringList lines;
    for (const HttpRequest &request : std::exchange(requests, {})) {
        const QString method =
            request.method == HttpRequest::Method::get ? QStringLiteral("GET ") : QStringLiteral("POST ");
        lines << method + request.url.toString(QUrl::FullyEncoded | QUrl::RemoveScheme | QUrl::RemoveAuthority);
    }
    return lines;
}

QStringList FakeBackend::texts() const {
    QStringList all;
    for (const QJsonObject &row : rows) {
        all << row.value(QStringLiteral("raw_text")).toString();
    }
    all.sort();
    return all;
}

} // namespace tallowby::test
