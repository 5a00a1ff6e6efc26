#include "media/VoiceRecordingService.h"
#include "storage/BlockStorage.h"
#include "storage/MediaStorage.h"
#include "support/FakeAudio.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

#include <QDir>

namespace tallowby::test {

namespace {

using namespace std::chrono_literals;

class VoiceRecording : public testing::Test {
protected:
    VoiceRecording() { qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit()); }
    ~VoiceRecording() override { qunsetenv("XDG_DATA_HOME"); }

    [[nodiscard]] BlockPtr makeNote() { return Block::voiceNote(QUuid::createUuid(), {}); }
    void speakUntil(double seconds, float level) {
        audio.recording().time = seconds;
        audio.recording().level = double(level);
        scheduler.advance(100ms);
    }

    TemporaryFolder folder;
    VirtualScheduler scheduler;
    LogCapture log;
    FakeAudio audio;
    BlockStorage storage{scheduler, std::nullopt};
    VoiceRecordingService service{audio, storage, scheduler};
    BlockPtr note = makeNote();
};

} // namespace

TEST_F(VoiceRecording, TheNoteNamesItsFileAtOnceAndGetsItsDurationAtTheEnd) {
    service.startRecording(*note);
    EXPECT_TRUE(service.isRecording(note->id()));
    const QString name = note->mediaFileName().value_or(QString());
    EXPECT_TRUE(audio.recording().isRunning);
    EXPECT_EQ(audio.recording().path, *MediaStorage::directory() + u'/' + name);
    EXPECT_EQ(name, name.left(36).toUpper() + u".m4a") << qPrintable(name);
    EXPECT_FALSE(note->needsSync());
    speakUntil(0.1, 0.5F);
    EXPECT_EQ(service.elapsed(), 0.1);
    EXPECT_EQ(service.levels(), QList<float>{0.5F});
    audio.recording().time = 0.15; // Since the last tick.
    service.stopRecording();
    EXPECT_EQ(note->mediaDuration(), 0.15);
    EXPECT_TRUE(note->needsSync());
    EXPECT_FALSE(service.activeBlockId());
    EXPECT_EQ(service.elapsed(), 0);
    EXPECT_TRUE(service.isFinishing(name));
    EXPECT_NE(note->updatedAt(), note->createdAt()) << "other machines learn of it";
    audio.finish();
    EXPECT_FALSE(service.isFinishing(name));
    scheduler.advance(2s);
    EXPECT_EQ(scheduler.pendingCalls(), 0U) << "nothing wakes the program while nothing is recorded";
    service.stopRecording();
}

TEST_F(VoiceRecording, ASecondOneEndsTheFirstAndReRecordingTakesAnotherFile) {
    service.startRecording(*note);
    const auto firstFile = note->mediaFileName();
    audio.recording().time = 3;
    const BlockPtr other = makeNote();
    service.startRecording(*other);
    EXPECT_EQ(note->mediaDuration(), 3);
    EXPECT_TRUE(note->needsSync());
    EXPECT_TRUE(service.isRecording(other->id()));
    audio.recording().time = 1;
    service.startRecording(*other);
    EXPECT_EQ(NoteRecordings::of(*other).previous.duration, 1);
    EXPECT_EQ(audio.recordings.size(), 3U);
    EXPECT_NE(note->mediaFileName(), other->mediaFileName());
    EXPECT_EQ(note->mediaFileName(), firstFile);
}

TEST_F(VoiceRecording, ANoteThatGoesTakesNothingWithIt) {
    service.startRecording(*note);
    note.reset();
    service.stopRecording();
    scheduler.advance(1s);
    EXPECT_TRUE(service.activeBlockId()) << "nobody is left to be told";
    const BlockPtr other = makeNote();
    service.startRecording(*other);
    EXPECT_TRUE(service.isRecording(other->id()));
    EXPECT_FALSE(audio.recordings.front()->isRunning);

    other->setDeletedAt(Timestamp::from(scheduler.now()));
    scheduler.advance(100ms);
    EXPECT_FALSE(service.activeBlockId()) << "the microphone is not left open for a note in the bin";
}

TEST_F(VoiceRecording, AMicrophoneThatGoesEndsTheRecordingAndKeepsIt) {
    audio.recordingError = QStringLiteral("there is no microphone");
    service.startRecording(*note);
    EXPECT_FALSE(service.activeBlockId());
    EXPECT_FALSE(note->mediaFileName());
    EXPECT_TRUE(log.lines().contains(QStringLiteral("[VoiceRecordingService] Record failed: there is no microphone")));

    audio.recordingError.clear();
    service.setMicrophoneId(QStringLiteral("second"));
    service.startRecording(*note);
    EXPECT_EQ(audio.recording().deviceId, QStringLiteral("second"));
    audio.recording().failure = MediaFailure{QStringLiteral("unplugged"), MediaFailure::Kind::deviceFailed};
    speakUntil(2, 0.1F);
    EXPECT_FALSE(service.activeBlockId());
    EXPECT_EQ(note->mediaDuration(), 2);
    audio.finish();
    EXPECT_EQ(service.mishap(note->id()), QStringLiteral("Stopped early: the microphone does not respond."));
}

TEST_F(VoiceRecording, TheOldRecordingIsThereUntilTheNewOneIsGoodAndAfterwards) {
    const auto record = [&](double seconds) {
        service.startRecording(*note);
        const QString name = *note->mediaFileName();
        audio.recording().time = seconds;
        service.stopRecording();
        return name;
    };
    const QString first = record(3);
    audio.finish();
    const QString second = record(5);
    audio.finish();
    const QByteArray settled = note->content();

    const QString third = record(0);
    EXPECT_EQ(note->mediaFileName(), third);
    audio.finishWithNothing({QStringLiteral("no room"), MediaFailure::Kind::diskFull});
    EXPECT_EQ(note->content(), settled) << "nothing came of it";
    EXPECT_EQ(service.mishap(note->id()), QStringLiteral("Nothing was recorded: the disk is full."));
    EXPECT_TRUE(log.lines().contains(QStringLiteral("[VoiceRecordingService] Record failed: no room")));

    service.restorePrevious(*note);
    EXPECT_EQ(note->mediaFileName(), first);
    EXPECT_EQ(note->mediaDuration(), 3);
    EXPECT_TRUE(note->needsSync());
    EXPECT_TRUE(service.mishap(note->id()).isEmpty());
    service.restorePrevious(*note);
    EXPECT_EQ(note->mediaFileName(), second) << "and back again";
    ASSERT_TRUE(QFile::remove(*MediaStorage::existingFile(first)));
    service.restorePrevious(*note);
    EXPECT_EQ(note->mediaFileName(), second) << "there is none to go back to";

    service.startRecording(*note);
    const QString last = *note->mediaFileName();
    note->setContent(settled); // Another device has moved the note meanwhile.
    service.stopRecording();
    EXPECT_EQ(note->mediaFileName(), last);
}

TEST_F(VoiceRecording, OnlyBareNamesOfFilesInTheFolderAreOpened) {
    const QString directory = *MediaStorage::directory();
    for (const QString &path : {QString(directory + u"/mine.m4a"), folder.file(QStringLiteral("secret.m4a"))}) {
        ASSERT_TRUE(QFile(path).open(QFile::WriteOnly));
    }
    ASSERT_TRUE(QFile::link(folder.file(QStringLiteral("secret.m4a")), directory + u"/link.m4a"));
    ASSERT_TRUE(QDir(directory).mkdir(QStringLiteral("folder.m4a")));
    EXPECT_EQ(MediaStorage::existingFile(QStringLiteral("mine.m4a")), directory + u"/mine.m4a");
    for (const QString &name :
         {QString(), QStringLiteral("."), QStringLiteral(".."), QStringLiteral("../../secret.m4a"),
          folder.file(QStringLiteral("secret.m4a")), QStringLiteral("./mine.m4a"), QStringLiteral("link.m4a"),
          QStringLiteral("folder.m4a"), QStringLiteral("gone.m4a"), QString(QStringLiteral("mine.m4a") + QChar(0))}) {
        EXPECT_FALSE(MediaStorage::existingFile(name)) << qPrintable(name);
    }
}

TEST_F(VoiceRecording, LoudnessIsReadOnceAFile) {
    service.startRecording(*note);
    service.stopRecording();
    const QString name = *note->mediaFileName();
    EXPECT_TRUE(service.loudness(name).isEmpty());
    EXPECT_EQ(audio.readings, 0) << "not before the file has come to its end";
    audio.finish();
    EXPECT_TRUE(service.loudness(name).isEmpty());
    QCoreApplication::processEvents();
    EXPECT_EQ(service.loudness(name), audio.pieces);
    EXPECT_EQ(audio.readings, 1);
}

} // namespace tallowby::test
