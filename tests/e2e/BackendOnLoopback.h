#pragma once

#include "sync/FakeBackend.h"

#include <QSslConfiguration>
#include <QThread>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class QTcpSocket;

namespace tallowby::test {

/// What a server, or whatever stands in its place, answers when nothing is right.
enum class Fault { none, outOfOrder, conflict, unauthorized, page, noHttp, half, hangUp, redirect };
inline constexpr int kFaultCount = 9;

/// The table, and what else the backend takes, behind a server on loopback. It answers on a thread of its own, since
/// the tests wait without an event loop; everything may be called from any thread.
class BackendOnLoopback {
public:
    /// With a configuration it speaks TLS.
    explicit BackendOnLoopback(const std::optional<QSslConfiguration> &tls = std::nullopt);
    ~BackendOnLoopback();
    BackendOnLoopback(const BackendOnLoopback &) = delete;
    BackendOnLoopback &operator=(const BackendOnLoopback &) = delete;

    [[nodiscard]] QString address() const;
    /// Of the table's notes.
    [[nodiscard]] QStringList texts();
    /// What was posted to paths that begin so, and taken.
    [[nodiscard]] std::vector<HttpRequest> posted(QStringView path);

    /// Nothing is taken while it has one.
    std::atomic<Fault> fault = Fault::none;
    std::atomic<int> refused = 0;
    /// Where a redirect points.
    std::atomic<quint16> otherPort = 0;
    [[nodiscard]] quint16 port() const { return m_port; }

private:
    void answer(const QByteArray &bytes, QTcpSocket &socket);
    [[nodiscard]] QByteArray wrongAnswer() const;

    std::mutex m_mutex;
    VirtualScheduler m_scheduler;
    FakeBackend m_table{m_scheduler};
    std::vector<HttpRequest> m_taken;
    std::unique_ptr<QThread> m_thread;
    const bool m_isSecure;
    quint16 m_port = 0;
};

} // namespace tallowby::test
