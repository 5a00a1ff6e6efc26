#include "e2e/BackendOnLoopback.h"

#include "support/ScriptedServer.h"

#include <QEventLoop>
#include <QTcpSocket>

#include <algorithm>
#include <future>
#include <iterator>

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

bool isOfTheTable(const HttpRequest &request) {
    return request.url.path() == u"/rest/v1/blocks" || request.url.path().startsWith(u"/rest/v1/rpc/");
}

} // namespace

BackendOnLoopback::BackendOnLoopback(const std::optional<QSslConfiguration> &tls)
    : m_isSecure(tls.has_value()) {
    std::promise<quint16> listening;
    m_thread.reset(QThread::create([this, &listening, tls] {
        const ScriptedServer server([this](const QByteArray &bytes, QTcpSocket &socket) { answer(bytes, socket); },
                                    tls);
        listening.set_value(server.port());
        QEventLoop().exec();
    }));
    m_thread->start();
    m_port = listening.get_future().get();
}

BackendOnLoopback::~BackendOnLoopback() {
    m_thread->quit();
    m_thread->wait();
}

QString BackendOnLoopback::address() const {
    return QStringLiteral("%1://127.0.0.1:%2")
        .arg(m_isSecure ? QStringLiteral("https") : QStringLiteral("http"))
        .arg(m_port);
}

QStringList BackendOnLoopback::texts() {
    const std::lock_guard lock(m_mutex);
    return m_table.texts();
}

std::vector<HttpRequest> BackendOnLoopback::posted(QStringView path) {
    const std::lock_guard lock(m_mutex);
    std::vector<HttpRequest> found;
    std::ranges::copy_if(m_taken, std::back_inserter(found), [path](const HttpRequest &request) {
        return request.method == HttpRequest::Method::post && request.url.path().startsWith(path);
    });
    return found;
}

QByteArray BackendOnLoopback::wrongAnswer() const {
    const auto whole = [](const QByteArray &head, const QByteArray &body) -> QByteArray {
        return "HTTP/1.1 " + head + "\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\nConnection: close\r\n\r\n" + body;
    };
    switch (fault.load()) {
    case Fault::none:
    case Fault::hangUp:
        return {};
    case Fault::outOfOrder:
        return whole("500 x\r\nContent-Type: text/html", "<html>out of order</html>");
    case Fault::conflict:
        return whole("409 Conflict\r\nContent-Type: application/json", R"({"code":"23505","message":"duplicate key"})");
    case Fault::unauthorized:
        return whole("401 Unauthorized\r\nContent-Type: application/json", R"({"message":"JWT expired"})");
    case Fault::page:
        return whole("200 OK\r\nContent-Type: text/html", "<html>Welcome to the hotel</html>");
    case Fault::noHttp:
        return QByteArrayLiteral("\x16\x03\x01 what is this\r\n\r\n");
    case Fault::half:
        return QByteArrayLiteral(
            "HTTP/1.1 201 Created\r\nContent-Type: application/json\r\nContent-Length: 900\r\n\r\n[{");
    case Fault::redirect:
        return whole("307 Temporary Redirect\r\nLocation: http://127.0.0.1:" + QByteArray::number(otherPort.load()) +
                         "/rest/v1/blocks",
                     {});
    }
    Q_UNREACHABLE();
}

void BackendOnLoopback::answer(const QByteArray &bytes, QTcpSocket &socket) {
    const std::lock_guard lock(m_mutex);
    if (fault != Fault::none) {
        ++refused;
        socket.write(wrongAnswer());
        socket.disconnectFromHost();
        return;
    }
    m_taken.push_back(parsed(bytes));
    const HttpResponse response =
        isOfTheTable(m_taken.back()) ? m_table.serve(m_taken.back()) : HttpResponse{201, "application/json", {}, {}};
    socket.write("HTTP/1.1 " + QByteArray::number(response.status) + " x\r\nContent-Length: " +
                 QByteArray::number(response.body.size()) + "\r\nContent-Type: " + response.contentType +
                 "\r\nContent-Range: " + response.contentRange + "\r\nConnection: close\r\n\r\n" + response.body);
    socket.disconnectFromHost();
}

} // namespace tallowby::test
