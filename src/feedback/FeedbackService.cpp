#include "feedback/FeedbackService.h"

#include "platform/Log.h"

#include <QFile>
#include <QUuid>

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

const QString kRowsPath = QStringLiteral("/rest/v1/feedback_responses");
const QString kBucket = QStringLiteral("feedback-audio/");
constexpr qsizetype kLongestLoggedBody = 2'000;

/// The request for `path` of the backend, by nobody in particular.
HttpRequest post(const SupabaseConfig &config, const QString &path, const QByteArray &contentType, QByteArray body) {
    HttpRequest request{HttpRequest::Method::post, config.projectURL, {}, std::move(body)};
    request.url.setPath(path);
    request.headers = {{QByteArrayLiteral("Authorization"), "Bearer " + config.anonymousKey},
                       {QByteArrayLiteral("apikey"), config.anonymousKey},
                       {QByteArrayLiteral("Content-Type"), contentType}};
    return request;
}

/// Status and body in one line: bounded, without the key.
QString described(const HttpAnswer &answer, const SupabaseConfig &config) {
    if (const auto *failure = std::get_if<HttpFailure>(&answer)) {
        return QStringLiteral("0): ") + failure->description;
    }
    const auto &response = std::get<HttpResponse>(answer);
    QByteArray body = response.body.left(kLongestLoggedBody);
    if (!config.anonymousKey.isEmpty()) {
        body.replace(config.anonymousKey, "…");
    }
    const QString text = QString::fromUtf8(body).simplified();
    return QString::number(response.status) + QStringLiteral("): ") +
           (text.isEmpty() ? QStringLiteral("no body") : text);
}

bool isSuccess(const HttpAnswer &answer) {
    const auto *response = std::get_if<HttpResponse>(&answer);
    return response && response->isSuccess();
}

} // namespace

FeedbackService::FeedbackService(HttpClient &http, const SupabaseConfig &config, QString appVersion)
    : m_http(http)
    , m_config(config)
    , m_appVersion(std::move(appVersion)) {}

void FeedbackService::submit(const FeedbackSubmission &submission, Progress progress, Done done) {
    if (!submission.voiceNoteFile) {
        sendRow(submission, std::nullopt, done);
        return;
    }
    uploadVoiceNote(*submission.voiceNoteFile, std::move(progress),
                    [this, submission, done = std::move(done)](const auto &uploaded) {
                        if (const auto *error = std::get_if<FeedbackError>(&uploaded)) {
                            done(*error);
                            return;
                        }
                        sendRow(submission, std::get<QString>(uploaded), done);
                    });
}

void FeedbackService::uploadVoiceNote(const QString &file, Progress progress, const Uploaded &uploaded) {
    const auto fail = [uploaded](const QString &text) {
        logLine(QString(u"[FeedbackService] ❌ Voice note upload failed (" + text));
        uploaded(FeedbackError{text});
    };
    QFile note(file);
    if (!note.open(QFile::ReadOnly) || note.size() > kLargestVoiceNote) {
        fail(QStringLiteral("0): the file cannot be sent"));
        return;
    }
    const QString object = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QStringLiteral(".m4a");
    HttpRequest request = post(m_config, QStringLiteral("/storage/v1/object/") + kBucket + object,
                               QByteArrayLiteral("audio/mp4"), note.readAll());
    request.onSent = [size = request.body.size(), progress = std::move(progress)](qint64 sent) {
        progress(double(sent) / double(std::max<qint64>(size, 1)));
    };
    m_exchange = m_http.send(std::move(request), [this, object, uploaded, fail](const HttpAnswer &answer) {
        if (isSuccess(answer)) {
            uploaded(QString(kBucket + object));
        } else {
            fail(described(answer, m_config));
        }
    });
}

void FeedbackService::sendRow(const FeedbackSubmission &submission, const std::optional<QString> &voiceNotePath,
                              const Done &done) {
    m_exchange = m_http.send(post(m_config, kRowsPath, QByteArrayLiteral("application/json"),
                                  feedbackRow(submission, m_appVersion, voiceNotePath)),
                             [this, file = submission.voiceNoteFile, done](const HttpAnswer &answer) {
                                 if (isSuccess(answer)) {
                                     logLine(u"[FeedbackService] ✅ Feedback submitted");
                                     if (file) {
                                         QFile::remove(*file);
                                     }
                                     done(std::nullopt);
                                     return;
                                 }
                                 const QString text = described(answer, m_config);
                                 logLine(QString(u"[FeedbackService] ❌ Submit failed (" + text));
                                 done(FeedbackError{text});
                             });
}

} // namespace tallowby
