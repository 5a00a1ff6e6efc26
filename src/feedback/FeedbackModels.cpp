#include "feedback/FeedbackModels.h"

#include <QCoreApplication>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace tallowby {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tallowby::FeedbackSurvey)
};

/// The most that the backend takes, in characters.
constexpr qsizetype kLongestText = 100'000;

} // namespace

QList<FeedbackQuestion> feedbackQuestions() {
    return {
        {Texts::tr("1. How often do you use Tallowby?"),
         {Texts::tr("Multiple times a day"), Texts::tr("Once a day"), Texts::tr("A few times a week"),
          Texts::tr("Rarely"), Texts::tr("Just trying it out")}},
        {Texts::tr("2. Overall, how's your experience so far?"),
         {Texts::tr("Love it"), Texts::tr("Good"), Texts::tr("Okay"), Texts::tr("Frustrating"),
          Texts::tr("Considering uninstalling")}},
        {Texts::tr("3. Which feature do you use most?"),
         {Texts::tr("Text notes"), Texts::tr("Checklists"), Texts::tr("Sticky notes"), Texts::tr("Code blocks"),
          Texts::tr("Sketching"), Texts::tr("Something else")}},
        {Texts::tr("4. What's holding you back from using it more?"),
         {Texts::tr("Nothing, it's great"), Texts::tr("Missing a feature I need"), Texts::tr("Bugs / reliability"),
          Texts::tr("Don't remember to use it"), Texts::tr("Too complicated")}},
        {Texts::tr("5. Would you recommend Tallowby to a friend?"),
         {Texts::tr("Definitely"), Texts::tr("Probably"), Texts::tr("Not sure"), Texts::tr("Probably not")}},
    };
}

QByteArray feedbackRow(const FeedbackSubmission &submission, const QString &appVersion,
                       const std::optional<QString> &voiceNotePath) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    const auto add = [&writer](const char *key, QString text) {
        // Postgres takes no such character.
        const QByteArray value = text.remove(QChar(0)).left(kLongestText).toUtf8();
        writer.Key(key);
        writer.String(value.constData(), rapidjson::SizeType(value.size()));
    };
    writer.StartObject();
    add("app_version", appVersion.isEmpty() ? QStringLiteral("unknown") : appVersion);
    add("usage_frequency", submission.usageFrequency);
    add("overall_experience", submission.overallExperience);
    add("most_used_feature", submission.mostUsedFeature);
    add("blocker", submission.blocker);
    add("would_recommend", submission.wouldRecommend);
    add("open_text", submission.openText);
    if (voiceNotePath) {
        add("voice_note_path", *voiceNotePath);
    }
    writer.EndObject();
    return {buffer.GetString(), qsizetype(buffer.GetSize())};
}

} // namespace tallowby
