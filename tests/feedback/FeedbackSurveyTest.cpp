#include "feedback/FeedbackSurvey.h"
#include "support/FakeAudio.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualScheduler.h"
#include "sync/FakeBackend.h"

#include <gtest/gtest.h>

#include <QFile>

namespace tallowby::test {

namespace {

using namespace std::chrono_literals;

const QByteArray kKey = "sb_publishable_for-tests";

class Survey : public testing::Test {
protected:
    Survey() {
        qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
        answerWith(HttpResponse{201, {}, {}, {}});
    }
    ~Survey() override { qunsetenv("XDG_DATA_HOME"); }

    void answerWith(const HttpAnswer &answer) {
        backend.fate = [answer](const HttpRequest &) { return FakeBackend::Fate{.delay = 1s, .answer = answer}; };
    }
    void chooseAll() {
        for (int question = 0; question < 5; ++question) {
            survey.choose(question, question == 4 ? 3 : question);
        }
    }
    QString record(const QByteArray &sound) {
        survey.recorder()->startRecording();
        const QString path = audio.recording().path;
        QFile file(path);
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(sound) == sound.size());
        survey.recorder()->stopRecording();
        audio.finish();
        return path;
    }
    void submit() {
        survey.submit();
        scheduler.advance(10s);
    }
    [[nodiscard]] QString lastLine() const { return log.lines().isEmpty() ? QString() : log.lines().last(); }

    TemporaryFolder folder;
    LogCapture log;
    VirtualScheduler scheduler;
    FakeBackend backend{scheduler};
    FakeAudio audio;
    SupabaseConfig config{QUrl(QStringLiteral("https://example.test")), kKey};
    FeedbackService service{backend, config, QStringLiteral("2.0")};
    FeedbackSurvey survey{service, audio, scheduler};
};

} // namespace

TEST_F(Survey, IsSentAsOneRowOnceEveryQuestionIsAnswered) {
    EXPECT_FALSE(survey.canSubmit());
    survey.submit();
    EXPECT_TRUE(backend.requests.empty());
    chooseAll();
    EXPECT_TRUE(survey.canSubmit());
    survey.choose(0, 5); // There is none.
    survey.choose(5, 0);
    survey.setOpenText(QStringLiteral("\"Undo\" — für alles\n") + QChar(0));
    survey.submit();
    EXPECT_TRUE(survey.isSubmitting());
    EXPECT_FALSE(survey.canSubmit());
    survey.submit();
    survey.choose(0, 3);
    scheduler.advance(10s);
    EXPECT_TRUE(survey.didSubmit());
    EXPECT_FALSE(survey.isSubmitting());

    ASSERT_EQ(backend.requests.size(), 1U);
    const HttpRequest &request = backend.requests.front();
    EXPECT_EQ(request.method, HttpRequest::Method::post);
    EXPECT_EQ(request.url, QUrl(QStringLiteral("https://example.test/rest/v1/feedback_responses")));
    const HttpRequest::Headers headers{
        {"Authorization", "Bearer " + kKey}, {"apikey", kKey}, {"Content-Type", "application/json"}};
    EXPECT_EQ(request.headers, headers);
    EXPECT_EQ(request.body.toStdString(),
              R"({"app_version":"2.0","usage_frequency":"Multiple times a day","overall_experience":"Good",)"
              R"("most_used_feature":"Sticky notes","blocker":"Don't remember to use it",)"
              R"("would_recommend":"Probably not","open_text":"\"Undo\" — für alles\n"})");
    EXPECT_EQ(lastLine(), QStringLiteral("[FeedbackService] ✅ Feedback submitted"));

    survey.leave();
    EXPECT_FALSE(survey.didSubmit()) << "the next time it begins anew";
    EXPECT_EQ(survey.selections(), QList<int>(5, -1));
    EXPECT_EQ(survey.openText(), QString());
    EXPECT_TRUE(feedbackRow({}, QString(), std::nullopt).startsWith(R"({"app_version":"unknown",)"));
}

TEST_F(Survey, AVoiceNoteGoesFirstAndItsFileIsGoneOnlyAfterSuccess) {
    chooseAll();
    const QString file = record("sound");
    EXPECT_TRUE(file.endsWith(u"-feedback.m4a")) << qPrintable(file);
    backend.fate = [](const HttpRequest &request) {
        const bool isRow = request.url.path().startsWith(u"/rest");
        return FakeBackend::Fate{.answer = HttpResponse{isRow ? 409 : 200, {}, {}, "taken by " + kKey}};
    };
    submit();
    EXPECT_FALSE(survey.didSubmit());
    EXPECT_EQ(survey.errorMessage(), QStringLiteral("Couldn't send — check your connection and try again."));
    EXPECT_EQ(lastLine(), QStringLiteral("[FeedbackService] ❌ Submit failed (409): taken by …"));
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_TRUE(survey.canSubmit()) << "and the answers are kept";

    answerWith(HttpResponse{200, {}, {}, {}});
    backend.requests.clear();
    submit();
    EXPECT_TRUE(survey.didSubmit());
    EXPECT_EQ(survey.errorMessage(), QString());
    EXPECT_FALSE(QFile::exists(file));
    ASSERT_EQ(backend.requests.size(), 2U);
    const HttpRequest &upload = backend.requests.front();
    const QString object = upload.url.path().section(u'/', -1);
    EXPECT_EQ(upload.url.path(), QStringLiteral("/storage/v1/object/feedback-audio/") + object);
    EXPECT_EQ(object, QUuid(object.left(36)).toString(QUuid::WithoutBraces).toUpper() + u".m4a");
    EXPECT_FALSE(file.contains(object.left(36))) << "the name is the upload's own";
    EXPECT_EQ(upload.body, "sound");
    EXPECT_EQ(headerOf(upload, "content-type"), "audio/mp4");
    EXPECT_EQ(headerOf(upload, "authorization"), "Bearer " + kKey);
    const QByteArray end = R"(,"voice_note_path":"feedback-audio/)" + object.toUtf8() + R"("})";
    EXPECT_TRUE(backend.requests.back().body.endsWith(end));
    EXPECT_FALSE(survey.recorder()->hasRecording());
}

TEST_F(Survey, ANoteThatDoesNotArriveIsKeptAndNoRowIsSentWithoutIt) {
    chooseAll();
    const QString file = record("sound");
    answerWith(HttpFailure{QStringLiteral("There is no network")});
    submit();
    EXPECT_EQ(backend.requests.size(), 1U);
    EXPECT_EQ(lastLine(), QStringLiteral("[FeedbackService] ❌ Voice note upload failed (0): There is no network"));
    answerWith(HttpResponse{413, {}, {}, {}});
    submit();
    EXPECT_EQ(lastLine(), QStringLiteral("[FeedbackService] ❌ Voice note upload failed (413): no body"));
    EXPECT_TRUE(QFile::exists(file));

    backend.requests.clear();
    ASSERT_TRUE(QFile::resize(file, FeedbackService::kLargestVoiceNote + 1));
    submit();
    EXPECT_EQ(survey.errorMessage(),
              QStringLiteral("This voice note is too large to send. Record a shorter one, or discard it."));
    ASSERT_TRUE(QFile::remove(file));
    submit();
    EXPECT_EQ(survey.errorMessage(), QStringLiteral("Couldn't send — check your connection and try again."));
    EXPECT_TRUE(backend.requests.empty());
    survey.recorder()->discard();
    answerWith(HttpResponse{201, {}, {}, {}});
    submit();
    EXPECT_TRUE(survey.didSubmit()) << "without it";
}

TEST_F(Survey, TheRecorderTakesAnotherFileEachTimeAndLeavesNoneBehind) {
    chooseAll();
    FeedbackVoiceRecorder &recorder = *survey.recorder();
    recorder.startRecording();
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_FALSE(survey.canSubmit()) << "while it is still spoken";
    audio.recording().time = 75.9;
    audio.recording().level = 0.5;
    scheduler.advance(FeedbackVoiceRecorder::kTick);
    EXPECT_EQ(recorder.elapsedText(), QStringLiteral("1:15"));
    EXPECT_EQ(recorder.level(), 0.5);
    recorder.stopRecording();
    EXPECT_TRUE(recorder.hasRecording());
    EXPECT_EQ(recorder.durationText(), QStringLiteral("1:15"));
    EXPECT_FALSE(survey.canSubmit()) << "its file is not whole yet";
    audio.finish();
    EXPECT_TRUE(survey.canSubmit());
    EXPECT_EQ(scheduler.pendingCalls(), 0U);

    const QString first = *recorder.recordedFile();
    recorder.togglePlay();
    EXPECT_TRUE(recorder.isPlaying());
    const QString second = record("again");
    EXPECT_FALSE(audio.playback().isPlaying);
    EXPECT_NE(first, second);
    EXPECT_FALSE(QFile::exists(first));
    survey.leave();
    EXPECT_EQ(recorder.recordedFile(), second) << "an answer that was not sent is there the next time";
    recorder.discard();
    EXPECT_FALSE(QFile::exists(second));

    audio.recordingError = QStringLiteral("there is no microphone");
    recorder.startRecording();
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_EQ(lastLine(), QStringLiteral("[FeedbackVoiceRecorder] Record failed: there is no microphone"));
    audio.recordingError.clear();
    recorder.startRecording();
    audio.recording().failure = MediaFailure{QStringLiteral("unplugged"), MediaFailure::Kind::deviceFailed};
    scheduler.advance(FeedbackVoiceRecorder::kTick);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_TRUE(recorder.hasRecording());
    audio.finish();
    EXPECT_EQ(recorder.mishap(), QStringLiteral("Stopped early: the microphone does not respond."));
    const auto kept = recorder.recordedFile();
    recorder.startRecording();
    recorder.stopRecording();
    audio.finishWithNothing({QStringLiteral("no room"), MediaFailure::Kind::diskFull});
    EXPECT_EQ(recorder.recordedFile(), kept) << "the old one is there until the new one is good";
    scheduler.advance(1s);
    EXPECT_EQ(scheduler.pendingCalls(), 0U);
}

} // namespace tallowby::test
