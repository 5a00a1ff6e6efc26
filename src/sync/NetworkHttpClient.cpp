#include "sync/NetworkHttpClient.h"

#include <QCoreApplication>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

constexpr qsizetype kPartSize = 64 * 1024;
constexpr int kFirstErrorStatus = 400;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(tallowby::NetworkHttpClient)
};

/// The stack's own texts name the address, and with it the user's id.
QString describe(QNetworkReply::NetworkError error) {
    switch (error) {
    case QNetworkReply::ConnectionRefusedError:
        return Words::tr("The server does not answer");
    case QNetworkReply::HostNotFoundError:
        return Words::tr("The server was not found");
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ContentReSendError:
        return Words::tr("The server closed the connection");
    case QNetworkReply::SslHandshakeFailedError:
        return Words::tr("The server could not prove who it is");
    case QNetworkReply::TimeoutError:
    case QNetworkReply::OperationCanceledError:
        return Words::tr("The request timed out");
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::TemporaryNetworkFailureError:
        return Words::tr("There is no network");
    default:
        return Words::tr("The connection failed (%1)").arg(int(error));
    }
}

QNetworkRequest toNetworkRequest(const HttpRequest &request) {
    QNetworkRequest network(request.url);
    for (const auto &[name, value] : request.headers) {
        network.setRawHeader(name, value);
    }
    network.setAttribute(QNetworkRequest::Http2AllowedAttribute, true);
    network.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    network.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    // Rows of zeros compress beyond what the stack takes for honest. It may stop there only what would be refused
    // anyway, which spares it from unpacking that to the end to know its size.
    network.setDecompressedSafetyCheckThreshold(request.maxAnswer);
    return network;
}

/// Watches over one reply: gathers its parts and gives up one that is too slow or too large.
class NetworkExchange final : public QObject, public HttpExchange {
public:
    NetworkExchange(Scheduler &scheduler, qint64 maxAnswer, QNetworkReply *reply, std::function<void(qint64)> onSent,
                    HttpClient::Done done)
        : m_scheduler(scheduler)
        , m_maxAnswer(maxAnswer)
        , m_reply(reply)
        , m_onSent(std::move(onSent))
        , m_done(std::move(done)) {
        connect(reply, &QNetworkReply::readyRead, this, [this] { gather(); });
        connect(reply, &QNetworkReply::uploadProgress, this, [this](qint64 sent, qint64) {
            if (sent > std::exchange(m_sent, sent)) {
                noteProgress();
                if (m_onSent) {
                    m_onSent(sent);
                }
            }
        });
        connect(reply, &QNetworkReply::finished, this, [this] { finish(); });
        noteProgress();
        watchWindow();
    }

    ~NetworkExchange() override {
        // It goes with its manager, too.
        if (m_reply) {
            m_reply->disconnect(this);
            m_reply->abort();
            m_reply->deleteLater();
        }
    }

private:
    void gather() {
        noteProgress();
        if (!readParts()) {
            giveUp(Words::tr("The answer is too large"));
        }
    }

    /// A few packed bytes may be gigabytes: they are unpacked only as far as they are read. False for too many.
    [[nodiscard]] bool readParts() {
        QByteArray part(kPartSize, Qt::Uninitialized);
        while (m_response.body.size() <= m_maxAnswer) {
            const qint64 count = m_reply->read(part.data(), part.size());
            if (count <= 0) {
                return true;
            }
            m_response.body.append(part.constData(), count);
        }
        return false;
    }

    void noteProgress() {
        m_silence = m_scheduler.after(NetworkHttpClient::kLongestSilence,
                                      [this] { giveUp(describe(QNetworkReply::TimeoutError)); });
    }

    void watchWindow() {
        m_window = m_scheduler.after(NetworkHttpClient::kLongestRequest, [this] {
            const qint64 moved = m_sent + m_response.body.size();
            if (moved - std::exchange(m_movedBefore, moved) < NetworkHttpClient::kWorthwhile) {
                giveUp(describe(QNetworkReply::TimeoutError));
            } else {
                watchWindow();
            }
        });
    }

    void giveUp(const QString &why) {
        m_reply->disconnect(this);
        deliver(HttpFailure{why});
    }

    void finish() {
        if (!readParts()) {
            deliver(HttpFailure{Words::tr("The answer is too large")});
            return;
        }
        const QVariant status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        const QNetworkReply::NetworkError error = m_reply->error();
        // A status of the server's is reported as an error, too; those errors begin there.
        const bool isWhole = error == QNetworkReply::NoError || error >= QNetworkReply::ContentAccessDenied;
        const bool isOfTheConnection =
            error == QNetworkReply::ProtocolUnknownError || error == QNetworkReply::ProtocolFailure;
        if (!status.isValid() || !isWhole || isOfTheConnection || isCutShort()) {
            deliver(
                HttpFailure{describe(error == QNetworkReply::NoError ? QNetworkReply::RemoteHostClosedError : error)});
            return;
        }
        m_response.status = status.toInt();
        // The network stack gives up unpacking with the error that it also has for statuses that it does not know.
        if (error == QNetworkReply::UnknownContentError && m_response.status < kFirstErrorStatus) {
            deliver(HttpFailure{Words::tr("The answer is too large or damaged")});
            return;
        }
        m_response.contentType = m_reply->rawHeader(QByteArrayLiteral("Content-Type"));
        m_response.contentRange = m_reply->rawHeader(QByteArrayLiteral("Content-Range"));
        deliver(std::move(m_response));
    }

    /// The server promised more than it sent.
    [[nodiscard]] bool isCutShort() const {
        const bool isPacked = m_reply->hasRawHeader(QByteArrayLiteral("Content-Encoding"));
        const QVariant promised = m_reply->header(QNetworkRequest::ContentLengthHeader);
        return !isPacked && promised.isValid() && promised.toLongLong() > m_response.body.size();
    }

    void deliver(HttpAnswer answer) {
        m_silence.cancel();
        m_window.cancel();
        // Whoever is told may destroy this object.
        const auto done = std::move(m_done);
        done(std::move(answer));
    }

    Scheduler &m_scheduler;
    const qint64 m_maxAnswer;
    QPointer<QNetworkReply> m_reply;
    const std::function<void(qint64)> m_onSent;
    HttpClient::Done m_done;
    HttpResponse m_response;
    qint64 m_sent = 0;
    qint64 m_movedBefore = 0;
    ScheduledCall m_silence;
    ScheduledCall m_window;
};

} // namespace

NetworkHttpClient::NetworkHttpClient(Scheduler &scheduler)
    : m_scheduler(scheduler) {}

std::unique_ptr<HttpExchange> NetworkHttpClient::send(HttpRequest request, Done done) {
    const QNetworkRequest network = toNetworkRequest(request);
    QNetworkReply *const reply =
        request.method == HttpRequest::Method::get ? m_network.get(network) : m_network.post(network, request.body);
    return std::make_unique<NetworkExchange>(m_scheduler, request.maxAnswer, reply, std::move(request.onSent),
                                             std::move(done));
}

} // namespace tallowby
