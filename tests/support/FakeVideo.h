#pragma once

#include "platform/desktop/Video.h"

#include <QCoreApplication>
#include <QFile>

#include <utility>
#include <vector>

namespace tallowby::test {

/// A camera whose films begin and end when a test says so.
class FakeVideo final : public Video {
public:
    struct Session {
        QString cameraId;
        std::shared_ptr<VideoFrames> frames = VideoFrames::make();
        bool isRunning = false;
        bool isOpen = true;
        int teardowns = 0;
        QStringList films = {};
        bool isRecording = false;
        int stops = 0;
        CaptureSession::Finished finished = nullptr;
    };
    struct Playback {
        QString path;
        std::shared_ptr<VideoFrames> frames = VideoFrames::make();
        bool isPlaying = false;
        int starts = 0;
        std::function<void(const std::optional<MediaFailure> &)> ended = nullptr;
    };

    CameraAccess access = CameraAccess::authorized;
    /// Waits for the person's answer, if there is to be one.
    bool asks = false;
    std::function<void(bool)> answer;
    bool hasCamera = true;
    QString playingError;
    /// Seconds in a file that is measured; none when nothing in it can be played.
    std::optional<double> length = 3;
    QList<MediaDevice> devices;
    std::vector<std::shared_ptr<Session>> sessions;
    std::vector<std::shared_ptr<Playback>> playbacks;

    [[nodiscard]] Session &session() { return *sessions.back(); }
    [[nodiscard]] Playback &playback() { return *playbacks.back(); }
    /// The film is at its end: whole, or cut short by a failure.
    void finish(const std::optional<MediaFailure> &failure = std::nullopt) {
        session().isRecording = false;
        std::exchange(session().finished, nullptr)(failure);
    }
    /// Nothing came of the film.
    void finishWithNothing(const MediaFailure &failure) {
        QFile::remove(session().films.last());
        finish(failure);
    }

    [[nodiscard]] CameraAccess cameraAccess() override { return access; }
    void requestCameraAccess(std::function<void(bool)> told) override {
        if (asks) {
            answer = std::move(told);
        } else {
            told(true);
        }
    }
    [[nodiscard]] QList<MediaDevice> cameras() override { return devices; }
    [[nodiscard]] std::unique_ptr<CaptureSession> makeSession(const QString &cameraId, const QString &) override {
        sessions.push_back(std::make_shared<Session>(Session{.cameraId = cameraId}));
        return std::make_unique<Capture>(sessions.back(), hasCamera);
    }
    [[nodiscard]] MediaResult<MoviePlayer> makePlayer(const QString &path) override {
        if (!playingError.isEmpty()) {
            return {nullptr, {playingError}};
        }
        playbacks.push_back(std::make_shared<Playback>(Playback{.path = path}));
        return {std::make_unique<Player>(playbacks.back()), {}};
    }
    void readLength(const QString &path, std::function<void(std::optional<double>)> done) override {
        QMetaObject::invokeMethod(
            qApp, [found = QFile::exists(path) ? length : std::nullopt, done = std::move(done)] { done(found); },
            Qt::QueuedConnection);
    }

private:
    struct Capture final : CaptureSession {
        Capture(std::shared_ptr<Session> session, bool hasCamera)
            : m_session(std::move(session))
            , m_hasCamera(hasCamera) {}
        ~Capture() override { m_session->isOpen = m_session->isRunning = m_session->isRecording = false; }
        void startRunning() override { m_session->isRunning = true; }
        void stopRunning() override {
            ++m_session->teardowns;
            m_session->isRunning = false;
        }
        [[nodiscard]] std::shared_ptr<VideoFrames> frames() const override { return m_session->frames; }
        [[nodiscard]] bool hasCamera() const override { return m_hasCamera; }
        void startRecording(const QString &path, Finished finished) override {
            m_session->films << path;
            m_session->isRecording = QFile(path).open(QFile::WriteOnly | QFile::NewOnly);
            if (!m_session->isRecording) {
                finished(MediaFailure{QStringLiteral("the file cannot be made"), MediaFailure::Kind::fileFailed});
                return;
            }
            m_session->finished = std::move(finished);
        }
        [[nodiscard]] bool isRecording() const override { return m_session->isRecording; }
        void stopRecording() override { ++m_session->stops; }
        std::shared_ptr<Session> m_session;
        bool m_hasCamera;
    };
    struct Player final : MoviePlayer {
        explicit Player(std::shared_ptr<Playback> playback)
            : m_playback(std::move(playback)) {}
        ~Player() override { m_playback->isPlaying = false; }
        [[nodiscard]] std::shared_ptr<VideoFrames> frames() const override { return m_playback->frames; }
        void playFromStart() override {
            ++m_playback->starts;
            m_playback->isPlaying = true;
        }
        void pause() override { m_playback->isPlaying = false; }
        void onEnd(std::function<void(const std::optional<MediaFailure> &)> ended) override {
            m_playback->ended = std::move(ended);
        }
        std::shared_ptr<Playback> m_playback;
    };
};

} // namespace tallowby::test
