#pragma once

#include "support/VirtualScheduler.h"
#include "sync/HttpClient.h"

#include <QJsonObject>
#include <QMap>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace tallowby::test {

/// A table of blocks behind PostgREST, as far as the program uses it, with a network of virtual time in between. A row
/// that is written replaces the whole row.
class FakeBackend final : public HttpClient {
public:
    /// What becomes of one request.
    struct Fate {
        Scheduler::Duration delay{0};
        /// The server never hears of it.
        bool isLost = false;
        /// The server does what it is asked, but nobody hears of that.
        bool isAnswerLost = false;
        /// In place of what the server would answer, which then does nothing.
        std::optional<HttpAnswer> answer = std::nullopt;
    };

    explicit FakeBackend(VirtualScheduler &scheduler)
        : m_scheduler(scheduler) {}

    [[nodiscard]] std::unique_ptr<HttpExchange> send(HttpRequest request, Done done) override;

    /// What the server answers, at once and without the network in between.
    [[nodiscard]] HttpResponse serve(const HttpRequest &request);

    /// Asked for each request; every one goes well when there is none.
    std::function<Fate(const HttpRequest &)> fate;
    std::vector<HttpRequest> requests;
    /// By id. What a row has is what PostgREST would hand out.
    QMap<QString, QJsonObject> rows;
    int rowLimit = 1000;
    /// A trigger keeps the row that is there when an older version arrives.
    bool keepsNewerRows = false;
    QByteArray searchAnswer = "[]";

    /// "GET rest/v1/blocks?…" of each request since the last call.
    [[nodiscard]] QStringList takeRequestLines();
    [[nodiscard]] QStringList texts() const;

private:
    [[nodiscard]] HttpResponse select(const HttpRequest &request) const;
    [[nodiscard]] HttpResponse upsert(const HttpRequest &request);

    VirtualScheduler &m_scheduler;
};

/// None when the request does not carry it.
[[nodiscard]] std::optional<QByteArray> headerOf(const HttpRequest &request, const QByteArray &name);

} // namespace tallowby::test
