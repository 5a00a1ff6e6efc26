#include "platform/linux/gstreamer/GstAudio.h"
#include "platform/FullDisk.h"
#include "platform/LooseDevices.h"
#include "platform/linux/gstreamer/Pipeline.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QFile>

#include <algorithm>
#include <optional>

namespace tallowby::test {

namespace {

/// A microphone that hears a tone of 440 Hz, and a loudspeaker that keeps its time in silence.
class GstAudioTest : public testing::Test {
protected:
    GstAudioTest() {
        qputenv("TALLOWBY_AUDIO_SOURCE", "audiotestsrc");
        qputenv("TALLOWBY_AUDIO_SINK", "fakesink");
    }
    ~GstAudioTest() override {
        qunsetenv("TALLOWBY_AUDIO_SOURCE");
        qunsetenv("TALLOWBY_AUDIO_SINK");
    }

    /// Records for so many seconds; returns what the recorder said of its time.
    double record(const QString &path, double seconds, const QString &copyBeforeEnd = {}) {
        auto [recorder, failure] = audio.makeRecorder(path, {});
        EXPECT_TRUE(recorder) << qPrintable(failure.text);
        if (!recorder || !recorder->record()) {
            return 0;
        }
        EXPECT_TRUE(waitUntil([&] { return recorder->currentTime() >= seconds; }));
        EXPECT_GT(recorder->level(), 0.8);
        EXPECT_FALSE(recorder->failure());
        if (!copyBeforeEnd.isEmpty()) {
            EXPECT_TRUE(QFile::copy(path, copyBeforeEnd));
        }
        const double time = recorder->currentTime();
        EXPECT_FALSE(stop(*recorder)) << "all went well";
        return time;
    }
    /// Stops it and waits for the file.
    [[nodiscard]] static std::optional<MediaFailure> stop(AudioRecorder &recorder) {
        bool isFinished = false;
        std::optional<MediaFailure> failure;
        recorder.stop([&](const std::optional<MediaFailure> &told) {
            failure = told;
            isFinished = true;
        });
        EXPECT_TRUE(waitUntil([&] { return isFinished; }));
        return failure;
    }
    /// What is to be heard in a recording, as the program finds out when nothing is written of it.
    [[nodiscard]] std::optional<double> length(const QString &path) {
        bool isRead = false;
        std::optional<double> seconds;
        audio.readLength(path, [&](const std::optional<double> &read) {
            seconds = read;
            isRead = true;
        });
        EXPECT_TRUE(waitUntil([&] { return isRead; }));
        return seconds;
    }
    /// How often the sound of the file swings in a second.
    [[nodiscard]] double pitch(const QString &path) {
        QString error;
        const QString raw = folder.file(QStringLiteral("raw"));
        const auto pipeline = Pipeline::parse(
            QStringLiteral("filesrc name=file ! decodebin ! audioconvert ! audio/x-raw,format=S16LE,channels=1 ! "
                           "filesink name=out"),
            error);
        EXPECT_TRUE(pipeline) << qPrintable(error);
        g_object_set(pipeline->element("file").get(), "location", path.toUtf8().constData(), nullptr);
        g_object_set(pipeline->element("out").get(), "location", raw.toUtf8().constData(), nullptr);
        EXPECT_TRUE(pipeline->setState(GST_STATE_PLAYING));
        EXPECT_TRUE(pipeline->next(GST_MESSAGE_EOS, 20 * GST_SECOND));
        QFile file(raw);
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        const QByteArray bytes = file.readAll();
        const auto *samples = reinterpret_cast<const qint16 *>(bytes.constData());
        // A second from the middle, where the encoder has settled.
        constexpr qsizetype kRate = 44'100;
        const qsizetype count = bytes.size() / 2;
        const qsizetype from = std::max<qsizetype>(1, count / 2 - kRate / 2);
        const qsizetype to = std::min(count, from + kRate);
        int rises = 0;
        for (qsizetype i = from; i < to; ++i) {
            rises += samples[i - 1] < 0 && samples[i] >= 0;
        }
        return double(rises) * kRate / double(to - from);
    }

    TemporaryFolder folder;
    GstAudio audio;
};

} // namespace

TEST_F(GstAudioTest, WhatIsRecordedIsInTheFileAndIsPlayed) {
    const QString path = folder.file(QStringLiteral("note.m4a"));
    const QString crashed = folder.file(QStringLiteral("crashed.m4a"));
    const double time = record(path, 2.6, crashed);
    EXPECT_NEAR(pitch(path), 440, 4);
    EXPECT_EQ(QFile(path).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());

    auto [player, failure] = audio.makePlayer(path);
    ASSERT_TRUE(player) << qPrintable(failure.text);
    EXPECT_NEAR(player->duration(), time, 0.4);
    EXPECT_FALSE(player->isPlaying());
    player->setCurrentTime(player->duration() - 0.5);
    EXPECT_NEAR(player->currentTime(), player->duration() - 0.5, 0.05);
    player->setRate(2);
    EXPECT_NEAR(player->currentTime(), player->duration() - 0.5, 0.05);
    player->play();
    EXPECT_TRUE(player->isPlaying());
    EXPECT_TRUE(waitUntil([&] { return !player->isPlaying(); }));
    player->play();
    EXPECT_TRUE(player->isPlaying());
    EXPECT_LT(player->currentTime(), player->duration() / 2) << "from the beginning again";
    player->pause();

    // Cut short, it is a recording still, and once it has been measured it can be sought.
    EXPECT_NEAR(length(crashed).value_or(0), 2, 0.2);
    auto rest = audio.makePlayer(crashed).made;
    ASSERT_TRUE(rest);
    EXPECT_NEAR(rest->duration(), 2, 0.2);
    rest->setCurrentTime(1.5);
    EXPECT_NEAR(rest->currentTime(), 1.5, 0.05);
}

TEST_F(GstAudioTest, ADiskThatTakesNoMoreEndsTheRecordingAndLeavesWhatIsThere) {
    struct Case {
        rlim_t room;
        double seconds;
    };
    // The first takes the header only, the second a second or two.
    for (const Case &disk : {Case{400, 0}, Case{20'000, 1.5}}) {
        const QString path = folder.file(QString::number(disk.room));
        auto recorder = audio.makeRecorder(path, {}).made;
        ASSERT_TRUE(recorder && recorder->record());
        {
            const FullDisk full(disk.room);
            ASSERT_TRUE(waitUntil([&] { return recorder->failure().has_value(); }));
            const auto failure = stop(*recorder);
            ASSERT_TRUE(failure);
            EXPECT_EQ(failure->kind, MediaFailure::Kind::fileFailed) << qPrintable(failure->text);
        }
        EXPECT_EQ(QFile::exists(path), disk.seconds > 0) << "a file with nothing in it is of no use";
        EXPECT_NEAR(length(path).value_or(0), disk.seconds, 0.8);
    }
}

TEST_F(GstAudioTest, StopMeansStopHoweverBusyItIs) {
    const QString path = folder.file(QStringLiteral("note.m4a"));
    const double spoken = record(path, 1);
    auto recorder = audio.makeRecorder(folder.file(QStringLiteral("next.m4a")), {}).made;
    ASSERT_TRUE(recorder && recorder->record());
    ASSERT_TRUE(waitUntil([&] { return recorder->currentTime() >= 1; }));
    // What else there is to do must not stretch the recording.
    for (int reading = 0; reading < 40; ++reading) {
        audio.readLoudness(path, [](const QList<float> &) {});
    }
    const double time = recorder->currentTime();
    EXPECT_FALSE(stop(*recorder));
    EXPECT_NEAR(audio.makePlayer(folder.file(QStringLiteral("next.m4a"))).made->duration(), time, 0.4) << spoken;
}

TEST_F(GstAudioTest, LoudnessIsReadFromTheFile) {
    const QString path = folder.file(QStringLiteral("note.m4a"));
    static_cast<void>(record(path, 1));
    std::optional<QList<float>> pieces;
    audio.readLoudness(path, [&pieces](const QList<float> &read) { pieces = read; });
    ASSERT_TRUE(waitUntil([&] { return pieces.has_value(); }));
    ASSERT_GT(pieces->size(), 20);
    EXPECT_GT(pieces->at(pieces->size() / 2), 0.8F);

    QFile text(folder.file(QStringLiteral("text.m4a")));
    ASSERT_TRUE(text.open(QFile::WriteOnly));
    text.write("no sound at all");
    text.close();
    pieces.reset();
    audio.readLoudness(text.fileName(), [&pieces](const QList<float> &read) { pieces = read; });
    ASSERT_TRUE(waitUntil([&] { return pieces.has_value(); }));
    EXPECT_TRUE(pieces->isEmpty());
    const auto [player, failure] = audio.makePlayer(text.fileName());
    EXPECT_FALSE(player);
    EXPECT_FALSE(failure.text.isEmpty());
    EXPECT_FALSE(length(text.fileName()));
}

TEST_F(GstAudioTest, WhatCannotBeRecordedSaysWhy) {
    EXPECT_FALSE(audio.makeRecorder(folder.file(QStringLiteral("none/note.m4a")), {}).failure.text.isEmpty());
    qputenv("TALLOWBY_AUDIO_SOURCE", "nosuchelement");
    const QString path = folder.file(QStringLiteral("note.m4a"));
    EXPECT_EQ(audio.makeRecorder(path, {}).failure.kind, MediaFailure::Kind::noDevice);
    EXPECT_FALSE(QFile::exists(path));
    // A recorder that is never started, nor stopped, ends by itself.
    qputenv("TALLOWBY_AUDIO_SOURCE", "audiotestsrc");
    EXPECT_TRUE(audio.makeRecorder(path, {}).made);
}

TEST_F(GstAudioTest, AMicrophoneThatGivesNoMoreLeavesWhatItHeard) {
    registerLooseDevices();
    // Unplugged, and at an end of its own.
    for (const char *microphone : {"loosemicrophone", "endingmicrophone"}) {
        qputenv("TALLOWBY_AUDIO_SOURCE", microphone);
        const QString path = folder.file(QLatin1StringView(microphone));
        auto recorder = audio.makeRecorder(path, {}).made;
        ASSERT_TRUE(recorder && recorder->record());
        ASSERT_TRUE(waitUntil([&] { return recorder->failure().has_value(); }));
        const auto failure = stop(*recorder);
        EXPECT_TRUE(failure && failure->kind == MediaFailure::Kind::deviceFailed);
        EXPECT_NEAR(pitch(path), 440, 15);
    }
}

} // namespace tallowby::test
