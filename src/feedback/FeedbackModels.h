#pragma once

#include <QByteArray>
#include <QList>
#include <QQmlEngine>
#include <QString>
#include <QStringList>

#include <optional>

namespace tallowby {

/// A question and what can be answered.
struct FeedbackQuestion {
    Q_GADGET
    QML_VALUE_TYPE(feedbackQuestion)
    Q_PROPERTY(QString question MEMBER question)
    Q_PROPERTY(QStringList options MEMBER options)

public:
    QString question;
    QStringList options;
};

/// The five, in their order.
[[nodiscard]] QList<FeedbackQuestion> feedbackQuestions();

/// What the form collects; the answers as they were shown.
struct FeedbackSubmission {
    QString usageFrequency;
    QString overallExperience;
    QString mostUsedFeature;
    QString blocker;
    QString wouldRecommend;
    QString openText;
    /// A file of this machine.
    std::optional<QString> voiceNoteFile;
};

struct FeedbackError {
    /// For the log.
    QString message;
};

/// The row that is sent, as JSON. `voiceNotePath` is where the note was stored before.
[[nodiscard]] QByteArray feedbackRow(const FeedbackSubmission &submission, const QString &appVersion,
                                     const std::optional<QString> &voiceNotePath);

} // namespace tallowby
