#include "blocks/CanvasDriver.h"
#include "blocks/voice/VoiceNoteBlockContent.h"
#include "blocks/voice/VoiceWaveform.h"
#include "media/VoiceRecordingService.h"
#include "model/AnyCodable.h"
#include "platform/AppEvents.h"
#include "storage/MediaStorage.h"
#include "support/FakeAudio.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QFile>

namespace tallowby::test {

namespace {

using namespace std::chrono_literals;
using State = VoiceNoteBlockContent::State;

/// A voice note of the size that a new one has, in the middle of the window.
class VoiceNoteBody : public testing::Test {
protected:
    VoiceNoteBody() {
        qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
        service.share();
        canvas.settle();
    }
    ~VoiceNoteBody() override { qunsetenv("XDG_DATA_HOME"); }

    [[nodiscard]] VoiceNoteBlockContent &bodyOf(const BlockPtr &block) {
        return *qobject_cast<VoiceNoteBlockContent *>(canvas.containers().at(block.get())->body());
    }
    [[nodiscard]] BlockPtr addNote(const QPointF &at, const QByteArray &content) {
        const BlockPtr block = canvas.add(BlockType::voiceNote, {at, QSizeF(240, 110)});
        block->setContent(content);
        canvas.settle();
        return block;
    }
    void makeFile(const QString &name) {
        ASSERT_TRUE(QFile(*MediaStorage::directory() + u'/' + name).open(QFile::WriteOnly));
    }
    /// On the one button of an empty note and of one that is recorded.
    void clickButton() { canvas.click({400, 350 - 12 - 15}); }
    void advance(std::chrono::milliseconds time) {
        canvas.scheduler.advance(time);
        canvas.settle();
    }

    TemporaryFolder folder;
    CanvasDriver canvas;
    FakeAudio audio;
    VoiceRecordingService service{audio, canvas.storage, canvas.scheduler};
};

} // namespace

TEST_F(VoiceNoteBody, IsRecordedAndPlayedWithThePointer) {
    const BlockPtr note = addNote({-120, -60}, {});
    VoiceNoteBlockContent &body = bodyOf(note);
    EXPECT_EQ(body.state(), State::empty);
    clickButton();
    ASSERT_EQ(body.state(), State::recording);
    audio.recording().time = 75.9;
    audio.recording().level = 0.5;
    advance(100ms);
    EXPECT_EQ(body.elapsedText(), QStringLiteral("1:15"));
    EXPECT_EQ(body.loudness(), QList<float>{0.5F});
    clickButton();
    ASSERT_EQ(body.state(), State::ready);
    EXPECT_EQ(body.durationText(), QStringLiteral("1:15"));
    body.togglePlay();
    EXPECT_TRUE(audio.playbacks.empty()) << "the file has not come to its end";
    audio.finish();
    canvas.settle();
    EXPECT_EQ(body.loudness(), audio.pieces);

    canvas.click({280 + 12 + 12, 350 - 8 - 40 + 12});
    ASSERT_EQ(audio.playbacks.size(), 1U);
    EXPECT_TRUE(body.isPlaying());
    EXPECT_EQ(body.durationText(), QStringLiteral("0:10")) << "the file knows better than the record";
    audio.playback().time = 4;
    advance(50ms);
    EXPECT_EQ(body.progress(), 0.4);
    body.changeRate();
    EXPECT_EQ(audio.playback().rate, 1.5);
    EXPECT_EQ(body.rateText(), QStringLiteral("1.5×"));
    body.togglePlay();
    EXPECT_FALSE(body.isPlaying());
    advance(1s);
    EXPECT_EQ(body.progress(), 0.4);
    body.togglePlay();
    audio.playback().isPlaying = false; // It has come to its end.
    advance(50ms);
    EXPECT_EQ(body.progress(), 0);
    EXPECT_EQ(canvas.scheduler.pendingCalls(), 0U);
    body.togglePlay();
    EXPECT_TRUE(body.isPlaying());
    EXPECT_EQ(audio.playbacks.size(), 1U);

    canvas.notifications.post(events::flipClosed);
    EXPECT_FALSE(audio.playback().isPlaying) << "nothing plays behind the desktop";
    body.seek(0.5);
    EXPECT_EQ(audio.playback().time, 5);
    body.record();
    EXPECT_EQ(body.state(), State::recording);
    EXPECT_FALSE(audio.playback().isPlaying);
}

TEST_F(VoiceNoteBody, SaysWhatIsNotThereAndOpensNoOtherFile) {
    const BlockPtr far = addNote({-120, -60}, R"({"fileName":"FAR.m4a","duration":3})");
    EXPECT_EQ(bodyOf(far).state(), State::missing);
    EXPECT_EQ(bodyOf(far).spokenText(), QStringLiteral("the recording is not on this device"));
    makeFile(QStringLiteral("FAR.m4a"));
    far->setContentField(QStringLiteral("fileName"), AnyCodable(QStringLiteral("../media/FAR.m4a")));
    EXPECT_EQ(bodyOf(far).state(), State::missing);
    bodyOf(far).togglePlay();
    EXPECT_TRUE(audio.playbacks.empty());
    EXPECT_TRUE(canvas.log.lines().contains(QStringLiteral("[VoiceNote] Playback failed: no such file")));

    const BlockPtr hostile = addNote({-120, 80}, R"({"fileName":"FAR.m4a","duration":1e300})");
    EXPECT_EQ(bodyOf(hostile).state(), State::ready);
    EXPECT_EQ(bodyOf(hostile).durationText(), QStringLiteral("1440:00"));
    audio.playingError = QStringLiteral("it is no recording");
    EXPECT_TRUE(bodyOf(hostile).activate());
    EXPECT_FALSE(bodyOf(hostile).isPlaying());
    EXPECT_EQ(bodyOf(hostile).state(), State::ready) << "it can be tried again";
}

TEST_F(VoiceNoteBody, AnInterruptedRecordingGetsItsLengthFromTheFileOrIsSaidToBeBroken) {
    const BlockPtr note = addNote({-120, -60}, {});
    makeFile(QStringLiteral("CUT.m4a"));
    makeFile(QStringLiteral("NOTHING.m4a"));
    note->setContent(R"({"fileName":"CUT.m4a"})");
    canvas.settle();
    EXPECT_EQ(bodyOf(note).durationText(), QStringLiteral("0:03"));
    EXPECT_TRUE(note->needsSync()) << "other devices learn of the recording";
    audio.length.reset();
    note->setContent(R"({"fileName":"NOTHING.m4a","previousFileName":"CUT.m4a","previousDuration":3})");
    canvas.settle();
    EXPECT_EQ(bodyOf(note).state(), State::broken);
    ASSERT_TRUE(bodyOf(note).hasPrevious());
    bodyOf(note).menuEntries().back().action();
    EXPECT_EQ(bodyOf(note).state(), State::ready);
    EXPECT_EQ(bodyOf(note).durationText(), QStringLiteral("0:03"));
}

TEST_F(VoiceNoteBody, TheMenuOffersEveryMicrophone) {
    audio.devices = {{QStringLiteral("desk"), QStringLiteral("On the desk")}};
    const BlockPtr note = addNote({-120, -60}, {});
    auto entries = bodyOf(note).menuEntries();
    ASSERT_EQ(entries.size(), 1U);
    ASSERT_EQ(entries[0].children.size(), 2U);
    EXPECT_EQ(entries[0].children[0].symbol, QStringLiteral("checkmark"));
    entries[0].children[1].action();
    EXPECT_TRUE(bodyOf(note).activate());
    EXPECT_EQ(audio.recording().deviceId, QStringLiteral("desk"));
    EXPECT_TRUE(bodyOf(note).menuEntries().empty());
    EXPECT_TRUE(bodyOf(note).activate());
    EXPECT_EQ(bodyOf(note).state(), State::ready);
}

TEST(VoiceWaveform, ABarIsAsHighAsTheLoudestPieceInIt) {
    EXPECT_EQ(VoiceWaveform::bars({0.1F, 0.4F, 0.2F, 0.3F}, 2, false), (QList<float>{0.4F, 0.3F}));
    EXPECT_EQ(VoiceWaveform::bars({0.1F, 0.4F}, 4, false), (QList<float>{0.1F, 0.1F, 0.4F, 0.4F}));
    EXPECT_EQ(VoiceWaveform::bars({0.1F, 0.4F}, 3, true), (QList<float>{0, 0.1F, 0.4F}));
    EXPECT_EQ(VoiceWaveform::bars({0.1F, 0.4F}, 1, true), (QList<float>{0.4F}));
    EXPECT_EQ(VoiceWaveform::bars({}, 2, false), (QList<float>{0, 0}));
    EXPECT_TRUE(VoiceWaveform::bars({0.1F}, -1, true).isEmpty());
}

} // namespace tallowby::test
