#pragma once

#include "feedback/FeedbackModels.h"
#include "feedback/FeedbackService.h"
#include "feedback/FeedbackVoiceRecorder.h"

#include <QObject>
#include <QQmlEngine>

namespace tallowby {

/// The questionnaire as it stands: what was answered, and how far it is on its way. It outlives the window in which it
/// is shown, so that answers that were not sent are there when it opens again. Main thread only.
class FeedbackSurvey : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QList<tallowby::FeedbackQuestion> questions READ questions CONSTANT)
    /// For each question the option that was chosen; -1 for none.
    Q_PROPERTY(QList<int> selections READ selections NOTIFY answersChanged)
    Q_PROPERTY(QString openText READ openText WRITE setOpenText NOTIFY answersChanged)
    Q_PROPERTY(tallowby::FeedbackVoiceRecorder *recorder READ recorder CONSTANT)
    Q_PROPERTY(bool canSubmit READ canSubmit NOTIFY stateChanged)
    Q_PROPERTY(bool isSubmitting READ isSubmitting NOTIFY stateChanged)
    /// How much of a voice note is on its way, from 0 to 1.
    Q_PROPERTY(qreal progress READ progress NOTIFY stateChanged)
    Q_PROPERTY(bool didSubmit READ didSubmit NOTIFY stateChanged)
    /// Empty for none.
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY stateChanged)

public:
    /// All of them must outlive the survey.
    FeedbackSurvey(FeedbackService &service, Audio &audio, Scheduler &scheduler);

    [[nodiscard]] const QList<FeedbackQuestion> &questions() const { return m_questions; }
    [[nodiscard]] const QList<int> &selections() const { return m_selections; }
    [[nodiscard]] const QString &openText() const { return m_openText; }
    void setOpenText(const QString &text);
    [[nodiscard]] FeedbackVoiceRecorder *recorder() { return &m_recorder; }
    /// Every question is answered, and nothing is on its way, neither to the backend nor into the file.
    [[nodiscard]] bool canSubmit() const;
    [[nodiscard]] bool isSubmitting() const { return m_isSubmitting; }
    [[nodiscard]] double progress() const { return m_progress; }
    [[nodiscard]] bool didSubmit() const { return m_didSubmit; }
    [[nodiscard]] const QString &errorMessage() const { return m_errorMessage; }

    Q_INVOKABLE void choose(int question, int option);
    Q_INVOKABLE void submit();
    /// Those of what is over and out: nothing plays or records on, and a survey that was sent begins anew.
    void leave();

Q_SIGNALS:
    void answersChanged();
    void stateChanged();

private:
    [[nodiscard]] FeedbackSubmission submission() const;
    void setError(const QString &message);

    FeedbackService &m_service;
    const QList<FeedbackQuestion> m_questions = feedbackQuestions();
    QList<int> m_selections;
    QString m_openText;
    FeedbackVoiceRecorder m_recorder;
    bool m_isSubmitting = false;
    double m_progress = 0;
    bool m_didSubmit = false;
    QString m_errorMessage;
};

} // namespace tallowby
