#include "blocks/CanvasDriver.h"
#include "blocks/video/VideoNoteBlockContent.h"
#include "blocks/video/VideoSurface.h"
#include "media/VideoRecordingService.h"
#include "media/VirtualSessionQueue.h"
#include "platform/AppEvents.h"
#include "storage/BlockStorage.h"
#include "storage/MediaStorage.h"
#include "support/FakeVideo.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>

namespace tallowby::test {

namespace {

using namespace std::chrono_literals;
using Phase = VideoNoteBlockContent::Phase;

/// A video note of the size that a new one has, in the middle of the window.
class VideoNoteBody : public testing::Test {
protected:
    VideoNoteBody() {
        qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
        service.share();
        canvas.settle();
    }
    ~VideoNoteBody() override { qunsetenv("XDG_DATA_HOME"); }

    [[nodiscard]] VideoNoteBlockContent &bodyOf(const BlockPtr &block) {
        return *qobject_cast<VideoNoteBlockContent *>(canvas.containers().at(block.get())->body());
    }
    [[nodiscard]] BlockPtr addNote(const QByteArray &content) {
        const BlockPtr block = canvas.add(BlockType::videoNote, {{-150, -110}, QSizeF(300, 220)});
        block->setContent(content);
        canvas.settle();
        return block;
    }
    void advance(std::chrono::milliseconds time) {
        canvas.settle();
        scheduler.advance(time);
        canvas.settle();
    }
    /// On the button in the middle of an empty note, and of one that can be played.
    void clickMiddle() { canvas.click({400, 308}); }
    void clickStop() { canvas.click({400, 410 - 26 - 8 - 15}); }

    TemporaryFolder folder;
    VirtualScheduler scheduler;
    BlockStorage storage{scheduler, std::nullopt};
    FakeVideo video;
    VirtualSessionQueue queue{scheduler};
    VideoRecordingService service{video, queue, storage, scheduler};
    CanvasDriver canvas;
};

} // namespace

TEST_F(VideoNoteBody, IsRecordedAndPlayedWithThePointer) {
    const BlockPtr note = addNote({});
    VideoNoteBlockContent &body = bodyOf(note);
    EXPECT_EQ(body.phase(), Phase::empty);
    clickMiddle();
    advance(0ms);
    ASSERT_EQ(body.phase(), Phase::preparing);
    const QString name = note->mediaFileName().value_or(QString());
    EXPECT_EQ(name, QUuid(name.left(36)).toString(QUuid::WithoutBraces).toUpper() + u".mp4") << "before it is recorded";
    note->setNeedsSync(false);
    advance(VideoRecorder::kWarmUp);
    ASSERT_EQ(body.phase(), Phase::recording);
    EXPECT_EQ(body.frames(), video.session().frames.get());
    EXPECT_EQ(video.session().films, QStringList{*MediaStorage::directory() + u'/' + name});
    advance(2'050ms);
    EXPECT_EQ(body.durationText(), QStringLiteral("0:02"));
    clickStop();
    advance(0ms);
    EXPECT_EQ(video.session().stops, 1);
    video.finish();
    advance(0ms);
    ASSERT_EQ(body.phase(), Phase::ready);
    EXPECT_NEAR(note->mediaDuration(), 2, 0.11) << "it is counted, not measured";
    EXPECT_TRUE(note->needsSync());
    EXPECT_EQ(body.frames(), video.playback().frames.get());
    EXPECT_FALSE(body.isPlaying());

    clickMiddle();
    EXPECT_TRUE(body.isPlaying() && video.playback().isPlaying);
    body.togglePlay();
    EXPECT_FALSE(body.isPlaying() || video.playback().isPlaying);
    body.togglePlay();
    EXPECT_EQ(video.playback().starts, 2) << "from the beginning each time";
    video.playback().ended({});
    EXPECT_FALSE(body.isPlaying());
    body.togglePlay();
    canvas.notifications.post(events::flipClosed);
    advance(0ms);
    EXPECT_FALSE(video.playback().isPlaying) << "nothing plays behind the desktop";
    EXPECT_FALSE(video.session().isOpen) << "and nothing is filmed";

    body.startRecording();
    advance(1s);
    EXPECT_NE(note->mediaFileName(), name);
    ASSERT_EQ(body.phase(), Phase::recording);
    EXPECT_EQ(video.sessions.size(), 2U);
    note->setDeletedAt(Timestamp::from(scheduler.now()));
    advance(100ms);
    EXPECT_EQ(video.session().stops, 1) << "no camera stays open for a note in the bin";
    EXPECT_EQ(video.playbacks.size(), 1U);
}

TEST_F(VideoNoteBody, WhatWasFilmedIsKeptWhenTheNoteGoesOutOfSight) {
    const BlockPtr note = addNote({});
    bodyOf(note).startRecording();
    advance(3s);
    canvas.model.updateVisibleBlocks({1e6, 1e6, 800, 600}, 1);
    advance(0ms);
    EXPECT_FALSE(video.session().isOpen);
    EXPECT_GT(note->mediaDuration(), 2.5);
    EXPECT_TRUE(note->needsSync());
}

TEST_F(VideoNoteBody, SaysWhatIsNotThereAndOpensNoOtherFile) {
    const BlockPtr note = addNote(R"({"fileName":"FAR.mp4","duration":1e300})");
    VideoNoteBlockContent &body = bodyOf(note);
    EXPECT_EQ(body.phase(), Phase::missing);
    ASSERT_TRUE(QFile(*MediaStorage::directory() + QStringLiteral("/FAR.mp4")).open(QFile::WriteOnly));
    for (const QByteArray &name : {QByteArray("../media/FAR.mp4"), QByteArray("/etc/passwd"), QByteArray("..")}) {
        note->setContent(R"({"duration":1,"fileName":")" + name + R"("})");
        EXPECT_EQ(body.phase(), Phase::missing) << name.toStdString();
    }
    EXPECT_TRUE(video.playbacks.empty());
    note->setContent(R"({"fileName":"FAR.mp4","duration":1e300})");
    EXPECT_EQ(body.phase(), Phase::ready);
    EXPECT_EQ(body.durationText(), QStringLiteral("1440:00"));
    EXPECT_EQ(video.playback().path, *MediaStorage::directory() + QStringLiteral("/FAR.mp4"));

    note->setContent("{}");
    video.access = CameraAccess::denied;
    EXPECT_TRUE(body.activate());
    advance(0ms);
    EXPECT_EQ(body.phase(), Phase::denied);
    EXPECT_FALSE(note->mediaFileName());
}

TEST_F(VideoNoteBody, TheOldFilmIsThereUntilTheNewOneIsGoodAndAfterwards) {
    const BlockPtr note = addNote({});
    VideoNoteBlockContent &body = bodyOf(note);
    const auto film = [&] {
        body.startRecording();
        body.startRecording(); // A hasty hand.
        advance(2s);
        EXPECT_EQ(body.phase(), Phase::recording);
    };
    film();
    video.finish();
    advance(0ms);
    const QByteArray first = note->content();

    const auto isAsBefore = [&](const char *mishap) {
        return note->content() == first && body.phase() == Phase::ready && body.mishap() == QString::fromUtf8(mishap);
    };
    film();
    video.finishWithNothing({QStringLiteral("no room"), MediaFailure::Kind::diskFull});
    advance(0ms);
    EXPECT_TRUE(isAsBefore("Nothing was recorded: the disk is full."));
    video.access = CameraAccess::denied;
    body.startRecording();
    advance(0ms);
    EXPECT_TRUE(isAsBefore("Camera access denied. Enable in System Settings → Privacy → Camera."));
    video.access = CameraAccess::authorized;
    canvas.notifications.post(events::flipClosed);
    advance(0ms);
    body.startRecording();
    advance(100ms);
    canvas.notifications.post(events::flipClosed); // While the camera warms up.
    advance(1s);
    EXPECT_TRUE(isAsBefore(""));

    film();
    video.finish(MediaFailure{QStringLiteral("no room"), MediaFailure::Kind::diskFull});
    advance(0ms);
    EXPECT_EQ(body.phase(), Phase::ready);
    EXPECT_EQ(body.mishap(), QStringLiteral("Stopped early: the disk is full."));
    EXPECT_EQ(video.playback().path, video.session().films.last()) << "what was filmed before can be seen";
    EXPECT_NEAR(note->mediaDuration(), 1.7, 0.2);
    EXPECT_TRUE(body.hasPrevious());
    canvas.click({250 + 12 + 60 + 20, 410 - 14}); // "Restore previous"
    advance(0ms);
    EXPECT_EQ(note->mediaFileName(), QFileInfo(video.playback().path).fileName());
    EXPECT_EQ(video.playback().path, video.sessions.front()->films.first());
    EXPECT_TRUE(body.mishap().isEmpty());
}

TEST_F(VideoNoteBody, AnInterruptedFilmGetsItsLengthFromTheFile) {
    const BlockPtr note = addNote({});
    VideoNoteBlockContent &body = bodyOf(note);
    for (const QString &name : {QStringLiteral("CUT.mp4"), QStringLiteral("NOTHING.mp4")}) {
        ASSERT_TRUE(QFile(*MediaStorage::directory() + u'/' + name).open(QFile::WriteOnly));
    }
    note->setContent(R"({"fileName":"CUT.mp4","duration":0})");
    advance(0ms);
    EXPECT_EQ(body.durationText(), QStringLiteral("0:03"));
    EXPECT_EQ(note->mediaDuration(), 3);
    EXPECT_TRUE(note->needsSync()) << "other devices learn of the film";
    video.length.reset();
    note->setContent(R"({"fileName":"NOTHING.mp4","previousFileName":"CUT.mp4","previousDuration":3})");
    advance(0ms);
    EXPECT_EQ(body.phase(), Phase::broken);
    body.restorePrevious();
    EXPECT_EQ(body.phase(), Phase::ready);
    EXPECT_EQ(body.durationText(), QStringLiteral("0:03"));
}

TEST_F(VideoNoteBody, PicturesKeepTheirShape) {
    const auto whole = VideoSurface::place({640, 480}, {276, 160}, false);
    EXPECT_EQ(whole.source, QRectF(0, 0, 640, 480));
    EXPECT_NEAR(whole.target.width() / whole.target.height(), 4.0 / 3, 0.01);
    EXPECT_EQ(whole.target.height(), 160);
    EXPECT_EQ(VideoSurface::place({480, 275}, {276, 160}, false).target, QRectF(0, 0, 276, 160)) << "no thin seams";
    const auto filled = VideoSurface::place({640, 480}, {276, 160}, true);
    EXPECT_EQ(filled.target, QRectF(0, 0, 276, 160));
    EXPECT_EQ(filled.source.width(), 640);
    EXPECT_NEAR(filled.source.width() / filled.source.height(), 276.0 / 160, 0.01);
    EXPECT_NEAR(filled.source.center().y(), 240, 0.01);
}

} // namespace tallowby::test
