#include "sync/NetworkHttpClient.h"
#include "support/ScriptedServer.h"
#include "support/VirtualScheduler.h"
#include "support/WaitUntil.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QTcpSocket>

#include <sys/resource.h>

namespace tallowby::test {

namespace {

using namespace std::chrono_literals;

/// Says when the client has seen progress: it sets its clock anew.
class CountingScheduler final : public Scheduler {
public:
    explicit CountingScheduler(VirtualScheduler &scheduler)
        : m_scheduler(scheduler) {}

    ScheduledCall after(Duration delay, std::function<void()> call) override {
        ++calls;
        return m_scheduler.after(delay, std::move(call));
    }
    ScheduledCall every(Duration interval, std::function<void()> call) override {
        return m_scheduler.every(interval, std::move(call));
    }
    [[nodiscard]] WallClock::time_point now() const override { return m_scheduler.now(); }
    [[nodiscard]] Duration monotonic() const override { return m_scheduler.monotonic(); }

    int calls = 0;

private:
    VirtualScheduler &m_scheduler;
};

class NetworkHttpClientTest : public testing::Test {
protected:
    VirtualScheduler scheduler;
    CountingScheduler counting{scheduler};
    NetworkHttpClient client{counting};
    std::optional<HttpAnswer> answer;
    std::unique_ptr<HttpExchange> exchange;

    static HttpRequest requestTo(quint16 port, const char *scheme = "http") {
        HttpRequest request;
        request.url = QUrl(QStringLiteral("%1://127.0.0.1:%2/rest/v1/blocks?user_id=eq.SECRET-ID")
                               .arg(QLatin1StringView(scheme))
                               .arg(port));
        request.headers = {{"Authorization", "Bearer secret-key"}, {"apikey", "secret-key"}};
        return request;
    }
    void send(const HttpRequest &request) {
        answer.reset();
        exchange = client.send(request, [this](HttpAnswer given) { answer = std::move(given); });
    }
    /// The answer to a request to that server; a failure without text when there was none.
    HttpAnswer ask(const ScriptedServer &server, const char *scheme = "http") {
        send(requestTo(server.port(), scheme));
        EXPECT_TRUE(waitUntil([this] { return answer.has_value(); }));
        return answer.value_or(HttpFailure{});
    }
    QString failureOf(const HttpAnswer &given) {
        const auto *failure = std::get_if<HttpFailure>(&given);
        EXPECT_TRUE(failure);
        const QString text = failure ? failure->description : QString();
        EXPECT_FALSE(text.contains(u"secret", Qt::CaseInsensitive)) << qPrintable(text);
        return text;
    }
};

} // namespace

TEST_F(NetworkHttpClientTest, RequestsArriveAsTheyWereMadeAndAnswersWhole) {
    const ScriptedServer server(
        ScriptedServer::answering("201 Created", "Content-Type: text/x\r\nContent-Range: 0-1/*\r\n", "ok"));
    HttpRequest request = requestTo(server.port());
    request.method = HttpRequest::Method::post;
    request.headers.emplace_back("Content-Type", "application/json");
    request.body = "{\"a\":1}";
    send(request);
    ASSERT_TRUE(waitUntil([this] { return answer.has_value(); }));
    const auto &response = std::get<HttpResponse>(*answer);
    EXPECT_EQ(response.status, 201);
    EXPECT_EQ(response.body, "ok");
    EXPECT_EQ(response.contentType, "text/x");
    EXPECT_EQ(response.contentRange, "0-1/*");
    const QByteArray seen = server.requests().first();
    EXPECT_TRUE(seen.startsWith("POST /rest/v1/blocks?user_id=eq.SECRET-ID HTTP/1.1\r\n")) << seen.constData();
    EXPECT_TRUE(seen.contains("\r\nAuthorization: Bearer secret-key\r\n"));
    EXPECT_TRUE(seen.contains("\r\napikey: secret-key\r\n"));
    EXPECT_TRUE(seen.endsWith("\r\n\r\n{\"a\":1}"));
    EXPECT_FALSE(seen.toLower().contains("cookie"));
}

TEST_F(NetworkHttpClientTest, EveryStatusIsAnAnswerWithItsBody) {
    for (const char *status : {"400 Bad Request", "401 Unauthorized", "404 Not Found", "409 Conflict", "418 Teapot",
                               "500 Internal Server Error", "503 Service Unavailable"}) {
        const ScriptedServer server(ScriptedServer::answering(status, "WWW-Authenticate: Basic realm=x\r\n", "why"));
        const HttpAnswer given = ask(server);
        const auto *response = std::get_if<HttpResponse>(&given);
        ASSERT_TRUE(response) << status;
        EXPECT_EQ(response->status, QByteArray(status).left(3).toInt());
        EXPECT_EQ(response->body, "why") << status;
        EXPECT_EQ(server.requests().size(), 1);
    }
}

TEST_F(NetworkHttpClientTest, TheKeyNeverFollowsARedirect) {
    const ScriptedServer elsewhere(ScriptedServer::answering("200 OK", {}, "[]"));
    for (const char *status : {"301 Moved", "302 Found", "303 See Other", "307 Temporary", "308 Permanent"}) {
        const ScriptedServer server(ScriptedServer::answering(
            status, "Location: http://127.0.0.1:" + QByteArray::number(elsewhere.port()) + "/\r\n", {}));
        const HttpAnswer given = ask(server);
        ASSERT_TRUE(std::holds_alternative<HttpResponse>(given)) << status;
        EXPECT_FALSE(std::get<HttpResponse>(given).isSuccess());
    }
    EXPECT_EQ(elsewhere.connections(), 0);
}

TEST_F(NetworkHttpClientTest, HalfAnAnswerIsNone) {
    for (const char *bytes : {"", "garbage\r\n\r\n", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n[{\"id\":"}) {
        const ScriptedServer server(ScriptedServer::saying(bytes));
        EXPECT_FALSE(failureOf(ask(server)).isEmpty()) << bytes;
    }
    // Whether an answer in chunks was cut short cannot always be told, but no half of it is JSON.
    const ScriptedServer cut(
        ScriptedServer::saying("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n10\r\n[{\"id\":"));
    const HttpAnswer given = ask(cut);
    const auto *response = std::get_if<HttpResponse>(&given);
    EXPECT_TRUE(response ? QJsonDocument::fromJson(response->body).isNull() : !failureOf(given).isEmpty());
    quint16 deadPort = 0;
    {
        const ScriptedServer gone(ScriptedServer::saying({}));
        deadPort = gone.port();
    }
    send(requestTo(deadPort));
    ASSERT_TRUE(waitUntil([this] { return answer.has_value(); }));
    EXPECT_EQ(failureOf(*answer), u"The server does not answer");
}

TEST_F(NetworkHttpClientTest, AServerThatCannotProveWhoItIsGetsNothing) {
    const ScriptedServer server(ScriptedServer::answering("200 OK", {}, "[]"), untrustedTls());
    EXPECT_EQ(failureOf(ask(server, "https")), u"The server could not prove who it is");
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(NetworkHttpClientTest, SilenceAndDripsEnd) {
    QTcpSocket *connection = nullptr;
    const ScriptedServer server([&connection](const QByteArray &, QTcpSocket &socket) {
        connection = &socket;
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 100000000\r\n\r\n");
    });
    send(requestTo(server.port()));
    ASSERT_TRUE(waitUntil([&connection] { return connection != nullptr; }));
    scheduler.advance(29s);
    EXPECT_FALSE(answer);
    scheduler.advance(2s);
    ASSERT_TRUE(answer);
    EXPECT_EQ(failureOf(*answer), u"The request timed out");

    // A byte now and then keeps the silence short, but not the request alive.
    connection = nullptr;
    send(requestTo(server.port()));
    ASSERT_TRUE(waitUntil([&connection] { return connection != nullptr; }));
    for (int drips = 0; drips < 2; ++drips) {
        scheduler.advance(29s);
        ASSERT_FALSE(answer);
        const int before = counting.calls;
        connection->write("x");
        ASSERT_TRUE(waitUntil([this, before] { return counting.calls > before; }));
    }
    scheduler.advance(3s);
    ASSERT_TRUE(answer);
    EXPECT_EQ(failureOf(*answer), u"The request timed out");
    EXPECT_EQ(scheduler.pendingCalls(), 0U);
}

TEST_F(NetworkHttpClientTest, AnAnswerWithoutEndIsGivenUp) {
    const ScriptedServer server([](const QByteArray &, QTcpSocket &socket) {
        socket.write("HTTP/1.1 200 OK\r\n\r\n");
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket,
                         [&socket] { socket.write(QByteArray(65536, ' ')); });
    });
    HttpRequest request = requestTo(server.port());
    request.maxAnswer = 1 << 20;
    send(request);
    ASSERT_TRUE(waitUntil([this] { return answer.has_value(); }));
    EXPECT_EQ(failureOf(*answer), u"The answer is too large");
}

TEST_F(NetworkHttpClientTest, AFewPackedBytesDoNotFillTheMemory) {
    const auto peak = [] {
        rusage usage{};
        ::getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss / 1024;
    };
    // A gibibyte of the same byte, in blocks that only say how often.
    constexpr int kBlockSize = 128 * 1024;
    constexpr int kBlocks = 8192;
    QByteArray bomb = QByteArray::fromHex("28b52ffd0038");
    for (int block = 1; block <= kBlocks; ++block) {
        const int header = (kBlockSize << 3) | (1 << 1) | (block == kBlocks ? 1 : 0);
        for (const int byte : {header, header >> 8, header >> 16, int(' ')}) {
            bomb += char(byte);
        }
    }
    const ScriptedServer server(ScriptedServer::answering("200 OK", "Content-Encoding: zstd\r\n", bomb));
    const auto before = peak();
    EXPECT_FALSE(failureOf(ask(server)).isEmpty());
    EXPECT_LT(peak() - before, 300) << "MiB";
}

TEST_F(NetworkHttpClientTest, RowsOfZerosPackedTightAreNoAttack) {
    const QByteArray zeros = '[' + QByteArray("0,").repeated(20'000'000) + "0]";
    const ScriptedServer server(
        ScriptedServer::answering("200 OK", "Content-Encoding: deflate\r\n", qCompress(zeros).sliced(4)));
    const HttpAnswer given = ask(server);
    ASSERT_TRUE(std::holds_alternative<HttpResponse>(given)) << qPrintable(std::get<HttpFailure>(given).description);
    EXPECT_TRUE(std::get<HttpResponse>(given).body == zeros);
}

TEST_F(NetworkHttpClientTest, WhoeverGivesUpHearsNothingMore) {
    const ScriptedServer server(ScriptedServer::answering("200 OK", {}, "[]"));
    send(requestTo(server.port()));
    ASSERT_TRUE(waitUntil([&server] { return !server.requests().isEmpty(); }));
    exchange.reset();
    answer.reset();
    ask(server);
    EXPECT_EQ(scheduler.pendingCalls(), 0U);
}

} // namespace tallowby::test
