#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

namespace tallowby {

struct HttpRequest {
    /// In bytes.
    static constexpr qint64 kUsualMaxAnswer = qint64{64} << 20;

    enum class Method { get, post };
    using Headers = std::vector<std::pair<QByteArray, QByteArray>>;

    Method method = Method::get;
    QUrl url;
    Headers headers;
    /// Of a post.
    QByteArray body;
    /// Told from time to time how many bytes of the body are on their way.
    std::function<void(qint64)> onSent = nullptr;
    /// The largest answer that is taken, in bytes once unpacked. A larger one fails, and is not read to its end.
    qint64 maxAnswer = kUsualMaxAnswer;
};

/// Whatever status the server gave, with the body whole; one that came in chunks may be cut short, which its reader
/// sees: no half of a JSON text is one.
struct HttpResponse {
    int status = 0;
    QByteArray contentType;
    QByteArray contentRange;
    QByteArray body;

    [[nodiscard]] bool isSuccess() const { return status >= 200 && status <= 299; }
};

/// No answer, or only a part of one.
struct HttpFailure {
    /// For people; names neither the address nor anything that was sent.
    QString description;
};

using HttpAnswer = std::variant<HttpResponse, HttpFailure>;

/// A request on its way. Destroying it gives it up: its answer is not delivered any more.
class HttpExchange {
public:
    virtual ~HttpExchange() = default;
};

/// The one way to the network. Main thread only.
class HttpClient {
public:
    using Done = std::function<void(HttpAnswer)>;

    virtual ~HttpClient() = default;

    /// Calls `done` once, never before it has returned; `done` may destroy the exchange.
    [[nodiscard]] virtual std::unique_ptr<HttpExchange> send(HttpRequest request, Done done) = 0;
};

} // namespace tallowby
