#pragma once

#include "platform/desktop/Audio.h"

#include <QCoreApplication>
#include <QFile>
#include <QPointer>

#include <map>
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
        bool hasFailed = false;
        /// Asked for when it was stopped.
        std::function<void()> finished = nullptr;
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
    /// Of what is played.
    double duration = 10;
    QList<MediaDevice> devices;
    QList<float> pieces{0.2F, 0.8F};
    std::vector<std::shared_ptr<Recording>> recordings;
    std::vector<std::shared_ptr<Playback>> playbacks;
    int readings = 0;

    [[nodiscard]] Recording &recording() { return *recordings.back(); }
    [[nodiscard]] Playback &playback() { return *playbacks.back(); }
    /// The file of the last recording is whole.
    void finish() { std::exchange(recording().finished, nullptr)(); }

    void prepare() override {}
    [[nodiscard]] QList<MediaDevice> microphones() override { return devices; }

    [[nodiscard]] MediaResult<AudioRecorder> makeRecorder(const QString &path, const QString &deviceId) override {
        if (!recordingError.isEmpty()) {
            return {nullptr, recordingError};
        }
        static_cast<void>(QFile(path).open(QFile::WriteOnly));
        recordings.push_back(std::make_shared<Recording>(Recording{.path = path, .deviceId = deviceId}));
        return {std::make_unique<Recorder>(recordings.back()), {}};
    }

    [[nodiscard]] MediaResult<AudioPlayer> makePlayer(const QString &path) override {
        if (!playingError.isEmpty()) {
            return {nullptr, playingError};
        }
        playbacks.push_back(std::make_shared<Playback>(Playback{.path = path, .duration = duration}));
        return {std::make_unique<Player>(playbacks.back()), {}};
    }

    void readLoudness(const QString &, std::function<void(const QList<float> &)> done) override {
        ++readings;
        QMetaObject::invokeMethod(
            qApp, [this, done = std::move(done)] { done(pieces); }, Qt::QueuedConnection);
    }

private:
    struct Recorder final : AudioRecorder {
        explicit Recorder(std::shared_ptr<Recording> recording)
            : m_recording(std::move(recording)) {}
        ~Recorder() override { m_recording->isRunning = false; }
        bool record() override { return m_recording->isRunning = true; }
        [[nodiscard]] double currentTime() override { return m_recording->time; }
        [[nodiscard]] double level() override { return m_recording->level; }
        [[nodiscard]] bool hasFailed() override { return m_recording->hasFailed; }
        void stop(std::function<void()> finished) override {
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
