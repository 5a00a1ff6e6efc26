#include "feedback/FeedbackSurvey.h"

#include <QFileInfo>

namespace tallowby {

FeedbackSurvey::FeedbackSurvey(FeedbackService &service, Audio &audio, Scheduler &scheduler)
    : m_service(service)
    , m_selections(m_questions.size(), -1)
    , m_recorder(audio, scheduler) {
    QQmlEngine::setObjectOwnership(&m_recorder, QQmlEngine::CppOwnership);
    audio.prepare();
    connect(&m_recorder, &FeedbackVoiceRecorder::changed, this, &FeedbackSurvey::stateChanged);
}

void FeedbackSurvey::setOpenText(const QString &text) {
    if (m_openText != text) {
        m_openText = text;
        Q_EMIT answersChanged();
    }
}

bool FeedbackSurvey::canSubmit() const {
    const bool isFileReady =
        !m_recorder.isRecording() && m_recorder.hasRecording() == m_recorder.recordedFile().has_value();
    return !m_selections.contains(-1) && !m_isSubmitting && isFileReady;
}

void FeedbackSurvey::choose(int question, int option) {
    if (m_isSubmitting || question < 0 || question >= m_questions.size() || option < 0 ||
        option >= m_questions[question].options.size() || m_selections[question] == option) {
        return;
    }
    m_selections[question] = option;
    Q_EMIT answersChanged();
    Q_EMIT stateChanged();
}

FeedbackSubmission FeedbackSurvey::submission() const {
    const auto answer = [this](int question) { return m_questions[question].options[m_selections[question]]; };
    return {answer(0), answer(1), answer(2), answer(3), answer(4), m_openText, m_recorder.recordedFile()};
}

void FeedbackSurvey::submit() {
    if (!canSubmit()) {
        return;
    }
    const FeedbackSubmission sent = submission();
    if (sent.voiceNoteFile && QFileInfo(*sent.voiceNoteFile).size() > FeedbackService::kLargestVoiceNote) {
        setError(tr("This voice note is too large to send. Record a shorter one, or discard it."));
        return;
    }
    m_errorMessage.clear();
    m_isSubmitting = true;
    m_progress = 0;
    Q_EMIT stateChanged();
    const auto progress = [this](double share) {
        m_progress = share;
        Q_EMIT stateChanged();
    };
    m_service.submit(sent, progress, [this](const std::optional<FeedbackError> &error) {
        m_isSubmitting = false;
        if (error) {
            setError(tr("Couldn't send — check your connection and try again."));
            return;
        }
        m_recorder.forget();
        m_didSubmit = true;
        Q_EMIT stateChanged();
    });
}

void FeedbackSurvey::setError(const QString &message) {
    m_errorMessage = message;
    Q_EMIT stateChanged();
}

void FeedbackSurvey::leave() {
    m_recorder.stopRecording();
    if (m_recorder.isPlaying()) {
        m_recorder.togglePlay();
    }
    if (m_didSubmit) {
        m_didSubmit = false;
        m_selections.fill(-1);
        m_openText.clear();
        Q_EMIT answersChanged();
        Q_EMIT stateChanged();
    }
}

} // namespace tallowby
