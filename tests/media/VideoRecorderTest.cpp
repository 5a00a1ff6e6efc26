#include "media/VideoRecorder.h"
#include "media/VirtualSessionQueue.h"
#include "support/FakeVideo.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace tallowby::test {

namespace {

using namespace std::chrono_literals;
using State = VideoRecorder::State;
using testing::ElementsAre;

class VideoRecorderTest : public testing::Test {
protected:
    VideoRecorderTest() {
        QObject::connect(recorder.get(), &VideoRecorder::stateChanged, recorder.get(),
                         [this] { states.push_back(recorder->state()); });
    }

    void record(const QString &url) {
        recorder->startRecording(url);
        scheduler.advance(1s);
        ASSERT_EQ(recorder->state(), State::recording);
    }
    void settle() { scheduler.advance(0ms); }

    TemporaryFolder folder;
    LogCapture log;
    QString first = folder.file(QStringLiteral("first.mp4"));
    QString second = folder.file(QStringLiteral("second.mp4"));
    QString third = folder.file(QStringLiteral("third.mp4"));
    VirtualScheduler scheduler;
    VirtualSessionQueue queue{scheduler};
    FakeVideo video;
    std::unique_ptr<VideoRecorder> recorder = std::make_unique<VideoRecorder>(video, queue);
    std::vector<State> states;
};

} // namespace

TEST_F(VideoRecorderTest, WarmsTheCameraUpOnceAndKeepsItForTheNextFilm) {
    recorder->startRecording(first);
    EXPECT_EQ(recorder->state(), State::idle) << "a state changes on the main queue";
    settle();
    EXPECT_EQ(recorder->state(), State::preparing);
    ASSERT_EQ(video.sessions.size(), 1U);
    EXPECT_TRUE(video.session().isRunning);
    EXPECT_EQ(recorder->preview(), video.session().frames) << "what the camera sees is shown from then on";
    recorder->stopRecording(); // In vain: it has not begun.
    scheduler.advance(249ms);
    EXPECT_TRUE(video.session().films.isEmpty());
    scheduler.advance(1ms);
    EXPECT_EQ(video.session().films, QStringList{first});
    EXPECT_EQ(recorder->state(), State::recording);
    recorder->stopRecording();
    settle();
    EXPECT_EQ(video.session().stops, 2) << "the first waited behind the warm-up";
    EXPECT_EQ(recorder->state(), State::recording) << "until the file is at its end";
    video.finish();
    settle();
    EXPECT_EQ(recorder->url(), first);
    EXPECT_TRUE(recorder->preview());

    recorder->startRecording(second);
    settle();
    EXPECT_EQ(video.session().films, (QStringList{first, second}));
    EXPECT_EQ(video.sessions.size(), 1U);
    video.finish(MediaFailure{QStringLiteral("no space left"), MediaFailure::Kind::diskFull});
    settle();
    EXPECT_THAT(states, ElementsAre(State::preparing, State::recording, State::ready, State::preparing,
                                    State::recording, State::idle));
    ASSERT_TRUE(recorder->failure());
    EXPECT_EQ(recorder->failure()->kind, MediaFailure::Kind::diskFull);
    EXPECT_EQ(log.lines().last(), QStringLiteral("[VideoRecorder] Record failed: no space left"));
}

TEST_F(VideoRecorderTest, WithoutLeaveNoCameraIsOpened) {
    for (const CameraAccess access : {CameraAccess::denied, CameraAccess::restricted}) {
        video.access = access;
        recorder->startRecording(first);
        settle();
    }
    EXPECT_THAT(states, ElementsAre(State::permissionDenied, State::permissionDenied));

    video.access = CameraAccess::notDetermined;
    video.asks = true;
    recorder->startRecording(first);
    scheduler.advance(1min);
    EXPECT_EQ(recorder->state(), State::preparing);
    video.answer(false);
    settle();
    EXPECT_EQ(recorder->state(), State::permissionDenied);
    recorder->startRecording(first);
    recorder.reset();
    video.answer(true);
    settle();
    EXPECT_TRUE(video.sessions.empty());
}

TEST_F(VideoRecorderTest, TheCameraIsLetGoExactlyOnce) {
    record(first);
    recorder->stopSession();
    settle();
    EXPECT_EQ(video.session().stops, 1);
    EXPECT_EQ(video.session().teardowns, 0) << "the film is not at its end";
    scheduler.advance(1s);
    video.finish();
    settle();
    EXPECT_EQ(video.session().teardowns, 1);
    EXPECT_EQ(recorder->preview(), nullptr);
    EXPECT_EQ(recorder->state(), State::ready);
    scheduler.advance(5s);
    EXPECT_EQ(video.session().teardowns, 1);

    record(second);
    EXPECT_EQ(video.sessions.size(), 2U);
    recorder->stopSession();
    scheduler.advance(VideoRecorder::kLongestEnd - 1ms);
    EXPECT_TRUE(video.session().isOpen);
    scheduler.advance(1ms);
    EXPECT_FALSE(video.session().isOpen) << "the system never tells of the end";
    video.finish();
    scheduler.advance(5s);
    EXPECT_EQ(video.session().teardowns, 1);

    record(third);
    recorder->stopRecording();
    settle();
    video.finish();
    recorder->stopSession();
    settle();
    EXPECT_FALSE(video.session().isOpen) << "nothing is left to wait for";
}

TEST_F(VideoRecorderTest, AFilmThatHasNotBegunWhenTheViewGoesAwayIsCalledOff) {
    recorder->startRecording(first);
    scheduler.advance(100ms);
    recorder->stopSession(); // While the camera warms up.
    scheduler.advance(1s);
    EXPECT_EQ(recorder->state(), State::idle);
    EXPECT_FALSE(recorder->failure());
    EXPECT_TRUE(video.session().films.isEmpty());
    EXPECT_FALSE(video.session().isOpen);

    video.access = CameraAccess::notDetermined;
    video.asks = true;
    recorder->startRecording(first);
    settle();
    recorder->stopSession(); // While the person is asked.
    settle();
    video.answer(true);
    scheduler.advance(1s);
    EXPECT_EQ(recorder->state(), State::idle);
    EXPECT_EQ(video.sessions.size(), 1U) << "no camera films behind the desktop";
}

TEST_F(VideoRecorderTest, WorkThatWaitsDoesNothingForARecorderThatIsGone) {
    recorder->startRecording(first);
    scheduler.advance(100ms);
    recorder.reset();
    scheduler.advance(5s);
    EXPECT_TRUE(video.session().films.isEmpty());
    EXPECT_FALSE(video.session().isOpen);

    recorder = std::make_unique<VideoRecorder>(video, queue);
    recorder->startRecording(first);
    recorder.reset();
    scheduler.advance(5s);
    EXPECT_EQ(video.sessions.size(), 1U);

    recorder = std::make_unique<VideoRecorder>(video, queue);
    record(third);
    recorder->stopSession();
    recorder.reset();
    settle();
    EXPECT_FALSE(video.session().isOpen);
    video.finish();
    scheduler.advance(5s);
    EXPECT_LE(video.session().teardowns, 1);
}

} // namespace tallowby::test
