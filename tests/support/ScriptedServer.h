#pragma once

#include <QByteArray>
#include <QList>
#include <QSslConfiguration>
#include <QTcpServer>

#include <functional>
#include <memory>
#include <optional>

class QTcpSocket;

namespace tallowby::test {

/// For a server whose certificate is for this machine and signed by nobody.
[[nodiscard]] QSslConfiguration untrustedTls();

/// A server on loopback that says exactly the bytes that a test gives it, however wrong they are. Takes each request
/// whole, one a connection.
class ScriptedServer {
public:
    /// What to do with the connection once the request is there.
    using Answer = std::function<void(const QByteArray &request, QTcpSocket &socket)>;

    /// With a configuration it speaks TLS.
    explicit ScriptedServer(Answer answer, const std::optional<QSslConfiguration> &tls = std::nullopt);
    /// The bytes, and the connection is closed.
    [[nodiscard]] static Answer saying(const QByteArray &bytes);
    /// A whole answer with that body.
    [[nodiscard]] static Answer answering(const QByteArray &statusLine, const QByteArray &headers,
                                          const QByteArray &body);

    [[nodiscard]] quint16 port() const { return m_server->serverPort(); }
    [[nodiscard]] const QList<QByteArray> &requests() const { return m_requests; }
    [[nodiscard]] int connections() const { return m_connections; }

private:
    void accept();
    void receive(QTcpSocket &socket);

    Answer m_answer;
    std::unique_ptr<QTcpServer> m_server;
    QList<QByteArray> m_requests;
    int m_connections = 0;
};

} // namespace tallowby::test
