#include "platform/linux/gstreamer/GstVideo.h"
#include "platform/FullDisk.h"
#include "platform/LooseDevices.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QDir>
#include <QFile>

#include <array>
#include <atomic>
#include <memory>
#include <optional>
#include <thread>

namespace tallowby::test {

namespace {

/// A camera that sees the bars of a test card, a microphone that hears a tone, and a loudspeaker that keeps its time in
/// silence.
class GstVideoTest : public testing::Test {
protected:
    GstVideoTest() {
        qputenv("TALLOWBY_VIDEO_SOURCE", "videotestsrc");
        qputenv("TALLOWBY_AUDIO_SOURCE", "audiotestsrc");
        qputenv("TALLOWBY_AUDIO_SINK", "fakesink");
    }
    ~GstVideoTest() override {
        qunsetenv("TALLOWBY_VIDEO_SOURCE");
        qunsetenv("TALLOWBY_AUDIO_SOURCE");
        qunsetenv("TALLOWBY_AUDIO_SINK");
    }

    /// Tells whether the film came to a good end.
    struct End {
        std::atomic<bool> isThere = false;
        std::optional<MediaFailure> failure;
        CaptureSession::Finished callback() {
            return [this](std::optional<MediaFailure> told) {
                failure = std::move(told);
                isThere = true;
            };
        }
        [[nodiscard]] bool isGood() {
            return waitUntil([this] { return isThere.load(); }) && !failure;
        }
        [[nodiscard]] bool isFailed(MediaFailure::Kind kind) {
            return waitUntil([this] { return isThere.load(); }) && failure && failure->kind == kind;
        }
    };
    /// From the left, as a camera or a film shows them: white, yellow, cyan, green, magenta, red, blue.
    [[nodiscard]] static bool isTestCard(const QImage &picture) {
        static constexpr std::array kHues{-1, 60, 180, 120, 300, 0, 240};
        if (picture.width() < 480 || picture.height() < 270) {
            return false;
        }
        for (std::size_t bar = 0; bar < kHues.size(); ++bar) {
            const QColor seen(picture.pixel(picture.width() * (2 * int(bar) + 1) / 14, picture.height() / 3));
            const int apart = std::abs((seen.hue() - kHues[bar] + 540) % 360 - 180);
            if (kHues[bar] < 0 ? seen.saturation() > 30 : apart > 12 || seen.saturation() < 150) {
                return false;
            }
        }
        return true;
    }
    [[nodiscard]] static bool shows(VideoFrames &frames) {
        return waitUntil([&frames] { return isTestCard(frames.newest()); });
    }
    /// How many pieces of a second are in the file.
    [[nodiscard]] static qsizetype pieces(const QString &path) {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? file.readAll().count("moof") : 0;
    }
    [[nodiscard]] bool isPlayable(const QString &path) {
        const auto player = video.makePlayer(path).made;
        return player && shows(*player->frames());
    }

    TemporaryFolder folder;
    GstVideo video;
};

} // namespace

TEST_F(GstVideoTest, WhatTheCameraSeesIsShownRecordedAndPlayed) {
    const auto session = video.makeSession({}, {});
    session->startRunning();
    EXPECT_TRUE(session->hasCamera());
    ASSERT_TRUE(shows(*session->frames()));
    const QString first = folder.file(QStringLiteral("first.mp4"));
    const QString cut = folder.file(QStringLiteral("cut.mp4"));
    const QString second = folder.file(QStringLiteral("second.mp4"));
    End firstEnd;
    session->startRecording(first, firstEnd.callback());
    EXPECT_TRUE(session->isRecording());
    ASSERT_TRUE(waitUntil([&] { return pieces(first) > 1; }));
    ASSERT_TRUE(QFile::copy(first, cut));
    session->stopRecording();
    EXPECT_FALSE(session->isRecording());
    End secondEnd; // While the first is still on its way to its end.
    session->startRecording(second, secondEnd.callback());
    ASSERT_TRUE(firstEnd.isGood());
    ASSERT_TRUE(waitUntil([&] { return QFile(second).size() > 60'000; }));
    EXPECT_EQ(QFile(second).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    session->stopRunning(); // As when its note goes away.
    session->stopRecording();
    ASSERT_TRUE(secondEnd.isGood());
    EXPECT_TRUE(isPlayable(first));
    EXPECT_TRUE(isPlayable(second));
    EXPECT_TRUE(isPlayable(cut)) << "what a crash leaves behind";
    std::optional<double> seconds;
    video.readLength(cut, [&seconds](const std::optional<double> &read) { seconds = read.value_or(0); });
    EXPECT_TRUE(waitUntil([&] { return seconds.has_value(); }));
    EXPECT_GT(*seconds, 0.9);

    auto [player, failure] = video.makePlayer(first);
    ASSERT_TRUE(player) << qPrintable(failure.text);
    ASSERT_TRUE(shows(*player->frames())) << "before it is played";
    int ends = 0;
    player->onEnd([&ends](const auto &ended) { ends += ended ? 100 : 1; });
    for (int turn = 1; turn <= 2; ++turn) {
        player->playFromStart();
        EXPECT_TRUE(waitUntil([&] { return ends == turn; }));
    }
    EXPECT_TRUE(isTestCard(player->frames()->newest())) << "the last picture stays";
}

TEST_F(GstVideoTest, WithoutDevicesThereIsSoundOnlyOrNothing) {
    qputenv("TALLOWBY_VIDEO_SOURCE", "nosuchelement");
    const QString path = folder.file(QStringLiteral("sound.mp4"));
    {
        const auto session = video.makeSession({}, {});
        session->startRunning();
        EXPECT_FALSE(session->hasCamera());
        End end;
        session->startRecording(path, end.callback());
        ASSERT_TRUE(waitUntil([&] { return QFile(path).size() > 4'000; }));
        session->stopRecording();
        EXPECT_TRUE(end.isGood());
    }
    qputenv("TALLOWBY_AUDIO_SOURCE", "nosuchelement");
    const auto session = video.makeSession({}, {});
    session->startRunning();
    End end;
    session->startRecording(folder.file(QStringLiteral("nothing.mp4")), end.callback());
    EXPECT_TRUE(end.isFailed(MediaFailure::Kind::noDevice));
    EXPECT_FALSE(QFile::exists(folder.file(QStringLiteral("nothing.mp4"))));
    EXPECT_FALSE(session->isRecording());

    QFile broken(folder.file(QStringLiteral("broken.mp4")));
    ASSERT_TRUE(broken.open(QFile::WriteOnly) && broken.write("no film") > 0);
    broken.close();
    const auto player = video.makePlayer(broken.fileName()).made;
    ASSERT_TRUE(player);
    bool isOver = false;
    player->onEnd([&isOver](const auto &ended) { isOver = ended.has_value(); });
    EXPECT_TRUE(waitUntil([&] { return isOver; })) << "what cannot be played is over at once";
}

TEST_F(GstVideoTest, ADeviceThatIsUnpluggedEndsTheFilmAndKeepsIt) {
    registerLooseDevices();
    for (const char *loose : {"TALLOWBY_VIDEO_SOURCE", "TALLOWBY_AUDIO_SOURCE"}) {
        const bool isCamera = loose[9] == 'V';
        const QByteArray whole = qgetenv(loose);
        qputenv(loose, isCamera ? "loosecamera" : "loosemicrophone");
        const QString path = folder.file(QLatin1StringView(loose) + QStringLiteral(".mp4"));
        End end;
        {
            const auto session = video.makeSession({}, {});
            session->startRunning();
            session->startRecording(path, end.callback());
            EXPECT_TRUE(end.isFailed(MediaFailure::Kind::deviceFailed)) << loose;
            EXPECT_FALSE(session->isRecording());
        }
        qputenv(loose, whole);
        EXPECT_TRUE(isPlayable(path)) << loose;
    }
}

TEST_F(GstVideoTest, AFullDiskOrADeadEncoderEndsTheFilmAtOnceAndKeepsIt) {
    const auto session = video.makeSession({}, {});
    session->startRunning();
    const auto film = [&](const QString &path, MediaFailure::Kind kind) {
        End end;
        session->startRecording(path, end.callback());
        EXPECT_TRUE(end.isFailed(kind)) << qPrintable(path);
        EXPECT_FALSE(session->isRecording()) << "nobody has stopped it";
    };
    const QString early = folder.file(QStringLiteral("early.mp4"));
    const QString full = folder.file(QStringLiteral("full.mp4"));
    const QString dead = folder.file(QStringLiteral("dead.mp4"));
    {
        const FullDisk disk(1'000);
        film(early, MediaFailure::Kind::fileFailed);
    }
    EXPECT_FALSE(QFile::exists(early)) << "a file with nothing in it is of no use";
    {
        const FullDisk disk(900'000);
        film(full, MediaFailure::Kind::fileFailed);
    }
    {
        const DyingEncoder encoder;
        film(dead, MediaFailure::Kind::encoderFailed);
    }
    EXPECT_TRUE(isPlayable(full));
    EXPECT_TRUE(isPlayable(dead));
}

TEST_F(GstVideoTest, ManyRecordingsLeaveNoThreadAndNoFileBehind) {
    const auto count = [](const char *of) {
        return QDir(QStringLiteral("/proc/self/") + QLatin1StringView(of)).count();
    };
    const auto film = [this](int number) {
        // As the program does: pictures are told of here all the same.
        std::unique_ptr<CaptureSession> session;
        std::thread([this, &session] {
            session = video.makeSession({}, {});
            session->startRunning();
        }).join();
        End end;
        const QString path = folder.file(QString::number(number));
        session->startRecording(path, end.callback());
        int pictures = 0;
        const QObject watching;
        QObject::connect(session->frames().get(), &VideoFrames::changed, &watching, [&] {
            static_cast<void>(session->frames()->newest());
            ++pictures;
        });
        ASSERT_TRUE(waitUntil([&] { return pictures > 8; }));
        session->stopRecording();
        ASSERT_TRUE(end.isGood());
        ASSERT_TRUE(isPlayable(path));
    };
    film(0); // Loads what stays.
    const auto files = count("fd");
    const auto threads = count("task");
    for (int number = 1; number <= 10; ++number) {
        film(number);
    }
    EXPECT_TRUE(waitUntil([&] { return count("fd") <= files && count("task") <= threads; }))
        << count("fd") << " files of " << files << ", " << count("task") << " threads of " << threads;
}

} // namespace tallowby::test
