#include "e2e/Desk.h"
#include "e2e/Waiting.h"
#include "support/ScriptedServer.h"
#include "sync/FakeBackend.h"

#include <X11/keysym.h>

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTcpSocket>
#include <QThread>

#include <atomic>
#include <future>
#include <mutex>

namespace tallowby::test {

namespace {

HttpRequest parsed(const QByteArray &bytes) {
    const auto end = bytes.indexOf("\r\n\r\n");
    const QByteArrayList lines = bytes.left(end).split('\n');
    HttpRequest request;
    request.method = lines.first().startsWith("POST") ? HttpRequest::Method::post : HttpRequest::Method::get;
    request.url = QUrl(QStringLiteral("http://backend") + QLatin1StringView(lines.first().split(' ').at(1)));
    for (const QByteArray &line : lines.mid(1)) {
        const auto colon = line.indexOf(':');
        request.headers.emplace_back(line.left(colon), line.mid(colon + 1).trimmed());
    }
    request.body = bytes.mid(end + 4);
    return request;
}

/// The table behind a server on loopback, on a thread of its own: the tests wait without an event loop.
class BackendOnLoopback {
public:
    BackendOnLoopback() {
        std::promise<quint16> listening;
        m_thread.reset(QThread::create([this, &listening] {
            const ScriptedServer server([this](const QByteArray &bytes, QTcpSocket &socket) { answer(bytes, socket); });
            listening.set_value(server.port());
            QEventLoop().exec();
        }));
        m_thread->start();
        m_port = listening.get_future().get();
    }
    ~BackendOnLoopback() {
        m_thread->quit();
        m_thread->wait();
    }

    [[nodiscard]] QString address() const { return QStringLiteral("http://127.0.0.1:%1").arg(m_port); }
    [[nodiscard]] QStringList texts() {
        const std::lock_guard lock(m_mutex);
        return m_table.texts();
    }
    std::atomic<bool> isBroken = false;
    std::atomic<int> refused = 0;

private:
    void answer(const QByteArray &bytes, QTcpSocket &socket) {
        const std::lock_guard lock(m_mutex);
        HttpResponse response{500, "text/html", {}, "<html>out of order</html>"};
        if (isBroken) {
            ++refused;
        } else {
            response = m_table.serve(parsed(bytes));
        }
        socket.write("HTTP/1.1 " + QByteArray::number(response.status) + " x\r\nContent-Length: " +
                     QByteArray::number(response.body.size()) + "\r\nContent-Type: " + response.contentType +
                     "\r\nContent-Range: " + response.contentRange + "\r\nConnection: close\r\n\r\n" + response.body);
        socket.disconnectFromHost();
    }

    std::mutex m_mutex;
    VirtualScheduler m_scheduler;
    FakeBackend m_table{m_scheduler};
    std::unique_ptr<QThread> m_thread;
    quint16 m_port = 0;
};

} // namespace

class SyncedMachines : public Desk {
protected:
    BackendOnLoopback backend;

    void SetUp() override {
        Desk::SetUp();
        environment().insert(QStringLiteral("TALLOWBY_SUPABASE_URL"), backend.address());
    }
    [[nodiscard]] testing::AssertionResult backendHas(QStringList texts) {
        texts.sort();
        return eventually([&] { return backend.texts() == texts; })
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "the backend has " << backend.texts().join(u'|').toStdString();
    }
    /// Another home of the same person.
    void moveToAnotherMachine() {
        const QString config = environment().value(QStringLiteral("XDG_CONFIG_HOME"));
        const QString home = config + QStringLiteral("-elsewhere");
        QDir().mkpath(home + QStringLiteral("/Tallowby"));
        ASSERT_TRUE(QFile::copy(config + QStringLiteral("/Tallowby/Tallowby.conf"),
                                home + QStringLiteral("/Tallowby/Tallowby.conf")));
        environment().insert(QStringLiteral("XDG_CONFIG_HOME"), home);
        environment().insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("-data"));
    }
};

TEST_F(SyncedMachines, ANoteReachesTheOtherMachineAndItsEditComesBack) {
    startProgram();
    openCanvas();
    keyboard.type(u"from here");
    ASSERT_TRUE(backendHas({QStringLiteral("from here")}));
    keyboard.tap(XK_Escape);
    ASSERT_TRUE(notesBecome({QStringLiteral("from here")}));
    endProgram();
    const QProcessEnvironment first = environment();

    moveToAnotherMachine();
    startProgram();
    openCanvas();
    ASSERT_TRUE(program().says(u"[BlockStorage] 💾 Persisted 1 blocks"));
    ASSERT_TRUE(notesBecome({QStringLiteral("from here")}));
    pointer.moveTo(kScreenCentre + QPoint(150, 150));
    keyboard.type(u"and there");
    ASSERT_TRUE(backendHas({QStringLiteral("from here"), QStringLiteral("and there")}));
    keyboard.tap(XK_Escape);
    endProgram();

    environment() = first;
    startProgram();
    openCanvas();
    EXPECT_TRUE(notesBecome({QStringLiteral("from here"), QStringLiteral("and there")}));
}

TEST_F(SyncedMachines, WhatIsTypedWhileTheServerIsOutOfOrderArrivesLater) {
    backend.isBroken = true;
    startProgram();
    openCanvas();
    keyboard.type(u"kept");
    ASSERT_TRUE(program().says(u"[SyncEngine] ❌ Upsert Error Status 500: <html>out of order</html>"));
    EXPECT_TRUE(program().says(u"[SyncEngine] ❌ Push failed: Network request failed"));
    ASSERT_TRUE(notesBecome({QStringLiteral("kept")}));
    const int before = backend.refused;
    backend.isBroken = false;
    keyboard.type(u" and sent");
    EXPECT_TRUE(backendHas({QStringLiteral("kept and sent")}));
    EXPECT_LT(before, 20) << "a server that is out of order is asked over and over";
}

TEST_F(SyncedMachines, AnAddressThatCannotBeUsedIsSaidInOneLine) {
    environment().insert(QStringLiteral("TALLOWBY_SUPABASE_URL"), QStringLiteral("http://example.org"));
    Program refused(environment());
    EXPECT_NE(refused.exitCode(), 0);
    EXPECT_TRUE(refused.hasSaid(u"Tallowby cannot start: TALLOWBY_SUPABASE_URL must begin with https"));
}

} // namespace tallowby::test
