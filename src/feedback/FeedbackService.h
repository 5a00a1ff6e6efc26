#pragma once

#include "feedback/FeedbackModels.h"
#include "sync/HttpClient.h"
#include "sync/SupabaseConfig.h"

#include <functional>
#include <memory>
#include <optional>

namespace tallowby {

/// Hands answers to the backend: a voice note into its file storage first, then the row that names it. One submission
/// at a time. Main thread only.
class FeedbackService {
public:
    /// The bucket's limit, in bytes.
    static constexpr qint64 kLargestVoiceNote = 25 * 1024 * 1024;
    using Done = std::function<void(std::optional<FeedbackError>)>;
    /// From 0 to 1.
    using Progress = std::function<void(double)>;

    /// All of them must outlive the service.
    FeedbackService(HttpClient &http, const SupabaseConfig &config, QString appVersion);

    /// Calls `done` once, unless the service ends before, and until then `progress` while a voice note is on its way.
    /// After success the note's file is gone; otherwise it is kept. A submission gives an earlier one up.
    void submit(const FeedbackSubmission &submission, Progress progress, Done done);

private:
    using Uploaded = std::function<void(std::variant<QString, FeedbackError>)>;

    void uploadVoiceNote(const QString &file, Progress progress, const Uploaded &uploaded);
    void sendRow(const FeedbackSubmission &submission, const std::optional<QString> &voiceNotePath, const Done &done);

    HttpClient &m_http;
    const SupabaseConfig &m_config;
    const QString m_appVersion;
    std::unique_ptr<HttpExchange> m_exchange;
};

} // namespace tallowby
