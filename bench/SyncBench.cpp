#include "SceneFile.h"

#include "platform/Log.h"
#include "platform/QtScheduler.h"
#include "platform/UserDefaults.h"
#include "storage/BlockStorage.h"
#include "sync/BackendRequests.h"
#include "sync/EmbeddingService.h"
#include "sync/NetworkHttpClient.h"
#include "sync/SyncEngine.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <chrono>

namespace tallowby::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kPushed = 1'000;
constexpr std::size_t kPulled = 10'000;
constexpr int kRounds = 3;
constexpr std::chrono::minutes kPatience{5};

double milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

/// Ends the program where the measurement makes no sense any more.
void require(bool holds, const char *what) {
    if (!holds) {
        QTextStream(stderr) << what << Qt::endl;
        std::exit(1);
    }
}

void runUntil(const std::function<bool()> &isOver, const char *what) {
    const QDeadlineTimer deadline(kPatience);
    while (!isOver() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 5);
    }
    require(isOver(), what);
}

/// The program's own way to the network, and what went over it.
class WatchedClient final : public HttpClient {
public:
    explicit WatchedClient(Scheduler &scheduler)
        : m_client(scheduler) {}

    [[nodiscard]] std::unique_ptr<HttpExchange> send(HttpRequest request, Done done) override {
        requests.push_back(request);
        return m_client.send(std::move(request), std::move(done));
    }

    std::vector<HttpRequest> requests;

private:
    NetworkHttpClient m_client;
};

/// One installation.
struct Installation {
    Installation(const SupabaseConfig &config, const QString &settings)
        : defaults(settings)
        , engine(storage, defaults, scheduler, client, embeddings, config) {}

    QtScheduler scheduler;
    WatchedClient client{scheduler};
    UserDefaults defaults;
    EmbeddingService embeddings;
    BlockStorage storage{scheduler, std::nullopt};
    SyncEngine engine;
};

/// The same requests by curl, one after another over one connection.
double byCurl(const std::vector<HttpRequest> &requests, const QTemporaryDir &folder) {
    QByteArray config;
    for (std::size_t i = 0; i < requests.size(); ++i) {
        const HttpRequest &request = requests[i];
        config += i == 0 ? "" : "next\n";
        config += "url = \"" + request.url.toEncoded() + "\"\nsilent\noutput = \"/dev/null\"\n";
        for (const auto &[name, value] : request.headers) {
            config += "header = \"" + name + ": " + value + "\"\n";
        }
        if (request.method == HttpRequest::Method::post) {
            QFile body(folder.filePath(QString::number(i)));
            require(body.open(QFile::WriteOnly), "a body could not be written");
            body.write(request.body);
            config += "data-binary = \"@" + body.fileName().toUtf8() + "\"\n";
        }
    }
    QFile file(folder.filePath(QStringLiteral("curl.conf")));
    require(file.open(QFile::WriteOnly), "the list of requests could not be written");
    file.write(config);
    file.close();
    const Clock::time_point start = Clock::now();
    QProcess curl;
    curl.start(QStringLiteral("curl"), {QStringLiteral("--config"), file.fileName()});
    require(curl.waitForFinished(-1) && curl.exitCode() == 0, "curl did not do it");
    return milliseconds(Clock::now() - start);
}

std::vector<BlockPtr> notes(std::size_t count, QUuid userId, unsigned seed) {
    std::vector<BlockPtr> blocks;
    for (auto &fields : sceneRecords({Scene::Kind::grid, count, seed})) {
        fields->id = QUuid::createUuid();
        fields->userId = userId;
        blocks.push_back(std::make_shared<Block>(std::move(fields)));
        blocks.back()->setNeedsSync(true);
    }
    return blocks;
}

struct Figures {
    std::vector<double> program;
    std::vector<double> curl;

    [[nodiscard]] QJsonObject summary() {
        std::ranges::sort(program);
        std::ranges::sort(curl);
        const double ours = program[program.size() / 2];
        const double theirs = curl[curl.size() / 2];
        return {{QStringLiteral("program_ms"), std::round(ours)},
                {QStringLiteral("curl_ms"), std::round(theirs)},
                {QStringLiteral("ratio"), std::round(100 * ours / theirs) / 100}};
    }
};

int run(const SupabaseConfig &config) {
    const QTemporaryDir folder;
    const QString settings = folder.filePath(QStringLiteral("settings.conf"));
    Figures push;
    {
        Installation installation(config, settings);
        SyncEngine &engine = installation.engine;
        runUntil([&] { return engine.lastSyncTime().has_value(); }, "the backend does not answer");
        const auto upload = [&](std::size_t count, unsigned seed) {
            for (const BlockPtr &block : notes(count, *engine.userId(), seed)) {
                installation.storage.insert(block);
            }
            installation.client.requests.clear();
            const Clock::time_point start = Clock::now();
            engine.pushLocalChanges();
            runUntil(
                [&] {
                    return std::ranges::none_of(installation.storage.blocks(),
                                                [](const BlockPtr &block) { return block->needsSync(); });
                },
                "the notes were not taken");
            return milliseconds(Clock::now() - start);
        };
        for (int round = 0; round < kRounds; ++round) {
            push.program.push_back(upload(kPushed, unsigned(round + 1)));
            std::vector<HttpRequest> requests;
            std::ranges::copy_if(
                installation.client.requests, std::back_inserter(requests),
                [](const HttpRequest &request) { return request.method == HttpRequest::Method::post; });
            require(requests.size() == kPushed, "the push was something else than one request for each note");
            push.curl.push_back(byCurl(requests, folder));
        }
        upload(kPulled - kRounds * kPushed, kRounds + 1);
    }
    Figures pull;
    for (int round = 0; round < kRounds; ++round) {
        const Clock::time_point start = Clock::now();
        Installation installation(config, settings);
        runUntil([&] { return installation.storage.blocks().size() == kPulled; }, "the notes did not come back");
        pull.program.push_back(milliseconds(Clock::now() - start));
        pull.curl.push_back(byCurl(installation.client.requests, folder));
    }
    const QJsonObject result{{QStringLiteral("push_%1").arg(kPushed), push.summary()},
                             {QStringLiteral("pull_%1").arg(kPulled), pull.summary()}};
    QTextStream(stdout) << QJsonDocument(result).toJson(QJsonDocument::Compact) << Qt::endl;
    return 0;
}

/// The backend of this tree, on this machine and in memory.
class Backend {
public:
    Backend() {
        m_process.start(QStringLiteral(TALLOWBY_LOOPBACK_BACKEND), {});
        const QByteArray greeting = "listening on 127.0.0.1:";
        QByteArray said;
        const QDeadlineTimer deadline(kPatience);
        while (!said.contains(greeting) && !deadline.hasExpired() && m_process.state() != QProcess::NotRunning) {
            m_process.waitForReadyRead(1000);
            said += m_process.readAllStandardOutput();
        }
        m_port = said.mid(said.indexOf(greeting) + greeting.size()).split('\n').first().trimmed().toInt();
        require(m_port > 0, "the backend did not start: tools/loopback-backend says why");
    }
    ~Backend() {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }

    [[nodiscard]] SupabaseConfig config() const {
        return {QUrl(QStringLiteral("http://127.0.0.1:%1").arg(m_port)), QByteArrayLiteral("sb_publishable_loopback")};
    }

private:
    QProcess m_process;
    int m_port = 0;
};

} // namespace

} // namespace tallowby::bench

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    tallowby::setLogSink([](const QString &) {});
    const tallowby::bench::Backend backend;
    return tallowby::bench::run(backend.config());
}
