#pragma once

#include "platform/desktop/Audio.h"

#include <QCoreApplication>
#include <QFile>
#include <QPointer>

#include <optional>
#include <utility>

namespace tallowby::test {

/// Sound without any device: recordings and playbacks whose time a test sets.
class FakeAudio final : public Audio {
public:
    struct Recording {
        QString path;
        QString deviceId;
        double time = 0;
        double level = 0;
        bool isRunning = false;
        std::optional<MediaFailure> failure = std::nullopt;
        /// Asked for when it was stopped.
        AudioRecorder::Finished finished = nullptr;
    };
    struct Playback {
        QString path;
        double duration = 0;
        double time = 0;
        double rate = 1;
        bool isPlaying = false;
    };

    /// Why nothing can be recorded, or played; empty when it can.
    QString recordingError;
    QString playingError;
    /// Seconds in a file that is measured; none when nothing in it can be played.
    std::optional<double> length = 3;
    /// Of what is played.
    double duration = 10;
    QList<MediaDevice> devices;
    QList<float> pieces{0.2F, 0.8F};
    std::vector<std::shared_ptr<Recording>> recordings;
    std::vector<std::shared_ptr<Playback>> playbacks;
    int readings = 0;

    [[nodiscard]] Recording &recording() { return *recordings.back(); }
    [[nodiscard]] Playback &playback() { return *playbacks.back(); }
    /// The file of the last recording is whole, or as whole as it gets.
    void finish(const std::optional<MediaFailure> &failure = std::nullopt) {
        std::exchange(recording().finished, nullptr)(failure ? failure : recording().failure);
    }
    /// Nothing came of the last recording.
    void finishWithNothing(const MediaFailure &failure) {
        QFile::remove(recording().path);
        finish(failure);
    }

    void prepare() override {}
    [[nodiscard]] QList<MediaDevice> microphones() override { return devices; }

    [[nodiscard]] MediaResult<AudioRecorder> makeRecorder(const QString &path, const QString &deviceId) override {
        if (!recordingError.isEmpty()) {
            return {nullptr, {recordingError, MediaFailure::Kind::noDevice}};
        }
        if (!QFile(path).open(QFile::WriteOnly | QFile::NewOnly)) {
            return {nullptr, {QStringLiteral("the file cannot be made"), MediaFailure::Kind::fileFailed}};
        }
        recordings.push_back(std::make_shared<Recording>(Recording{.path = path, .deviceId = deviceId}));
        return {std::make_unique<Recorder>(recordings.back()), {}};
    }

    [[nodiscard]] MediaResult<AudioPlayer> makePlayer(const QString &path) override {
        if (!playingError.isEmpty()) {
            return {nullptr, {playingError}};
        }
        playbacks.push_back(std::make_shared<Playback>(Playback{.path = path, .duration = duration}));
        return {std::make_unique<Player>(playbacks.back()), {}};
    }

    void readLoudness(const QString &, std::function<void(const QList<float> &)> done) override {
        ++readings;
        QMetaObject::invokeMethod(
            qApp, [this, done = std::move(done)] { done(pieces); }, Qt::QueuedConnection);
    }

    void readLength(const QString &path, std::function<void(std::optional<double>)> done) override {
        QMetaObject::invokeMethod(
            qApp, [found = QFile::exists(path) ? length : std::nullopt, done = std::move(done)] { done(found); },
            Qt::QueuedConnection);
    }

private:
    struct Recorder final : AudioRecorder {
        explicit Recorder(std::shared_ptr<Recording> recording)
            : m_recording(std::move(recording)) {}
        ~Recorder() override { m_recording->isRunning = false; }
        bool record() override { return m_recording->isRunning = true; }
        [[nodiscard]] double currentTime() override { return m_recording->time; }
        [[nodiscard]] double level() override { return m_recording->level; }
        [[nodiscard]] std::optional<MediaFailure> failure() override { return m_recording->failure; }
        void stop(Finished finished) override {
            m_recording->isRunning = false;
            m_recording->finished = std::move(finished);
        }
        std::shared_ptr<Recording> m_recording;
    };
    struct Player final : AudioPlayer {
        explicit Player(std::shared_ptr<Playback> playback)
            : m_playback(std::move(playback)) {}
        ~Player() override { m_playback->isPlaying = false; }
        void play() override { m_playback->isPlaying = true; }
        void pause() override { m_playback->isPlaying = false; }
        [[nodiscard]] bool isPlaying() override { return m_playback->isPlaying; }
        [[nodiscard]] double duration() const override { return m_playback->duration; }
        [[nodiscard]] double currentTime() override { return m_playback->time; }
        void setCurrentTime(double seconds) override { m_playback->time = seconds; }
        void setRate(double rate) override { m_playback->rate = rate; }
        std::shared_ptr<Playback> m_playback;
    };
};

} // namespace tallowby::test
