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

BackendOnLoopback::BackendOnLoopback() {
    std::promise<quint16> listening;
    m_thread.reset(QThread::create([this, &listening] {
        const ScriptedServer server([this](const QByteArray &bytes, QTcpSocket &socket) { answer(bytes, socket); });
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
    return QStringLiteral("http://127.0.0.1:%1").arg(m_port);
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

void BackendOnLoopback::answer(const QByteArray &bytes, QTcpSocket &socket) {
    const std::lock_guard lock(m_mutex);
    HttpResponse response{500, "text/html", {}, "<html>out of order</html>"};
    if (isBroken) {
        ++refused;
    } else {
        m_taken.push_back(parsed(bytes));
        response = isOfTheTable(m_taken.back()) ? m_table.serve(m_taken.back())
                                                : HttpResponse{201, "application/json", {}, {}};
    }
    socket.write("HTTP/1.1 " + QByteArray::number(response.status) + " x\r\nContent-Length: " +
                 QByteArray::number(response.body.size()) + "\r\nContent-Type: " + response.contentType +
                 "\r\nContent-Range: " + response.contentRange + "\r\nConnection: close\r\n\r\n" + response.body);
    socket.disconnectFromHost();
}

} // namespace tallowby::test
