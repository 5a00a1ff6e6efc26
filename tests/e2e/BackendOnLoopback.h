#pragma once

#include "sync/FakeBackend.h"

#include <QThread>

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

class QTcpSocket;

namespace tallowby::test {

/// The table, and what else the backend takes, behind a server on loopback. It answers on a thread of its own, since
/// the tests wait without an event loop; everything may be called from any thread.
class BackendOnLoopback {
public:
    BackendOnLoopback();
    ~BackendOnLoopback();
    BackendOnLoopback(const BackendOnLoopback &) = delete;
    BackendOnLoopback &operator=(const BackendOnLoopback &) = delete;

    [[nodiscard]] QString address() const;
    /// Of the table's notes.
    [[nodiscard]] QStringList texts();
    /// What was posted to paths that begin so, and taken.
    [[nodiscard]] std::vector<HttpRequest> posted(QStringView path);

    /// Nothing is taken while it is.
    std::atomic<bool> isBroken = false;
    std::atomic<int> refused = 0;

private:
    void answer(const QByteArray &bytes, QTcpSocket &socket);

    std::mutex m_mutex;
    VirtualScheduler m_scheduler;
    FakeBackend m_table{m_scheduler};
    std::vector<HttpRequest> m_taken;
    std::unique_ptr<QThread> m_thread;
    quint16 m_port = 0;
};

} // namespace tallowby::test
