#pragma once

#include "media/SessionQueue.h"
#include "platform/desktop/Video.h"

#include <QObject>

#include <memory>
#include <optional>

namespace tallowby {

/// Records the film of one video note. What has to do with devices happens on the session queue; what the note sees of
/// it changes on the main thread, where this object lives.
class VideoRecorder : public QObject {
    Q_OBJECT

public:
    enum class State {
        /// There is a finished film, `url`.
        ready,
        idle,
        permissionDenied,
        preparing,
        recording,
    };
    Q_ENUM(State)

    /// The camera needs that long before its first picture is worth keeping.
    static constexpr std::chrono::milliseconds kWarmUp{250};
    /// A film that does not come to its end holds the camera no longer than that.
    static constexpr std::chrono::seconds kLongestEnd{3};

    /// Both must outlive the recorder.
    VideoRecorder(Video &video, SessionQueue &queue, QObject *parent = nullptr);
    /// Work that waits does nothing any more; a film that is being recorded is kept.
    ~VideoRecorder() override;

    [[nodiscard]] State state() const { return m_state; }
    /// The file of the finished film.
    [[nodiscard]] const QString &url() const { return m_url; }
    /// Why the film ended early or came to nothing, while idle; none when it was called off before it began. A film of
    /// which something can be played is still there.
    [[nodiscard]] const std::optional<MediaFailure> &failure() const { return m_failure; }
    /// What the camera sees while the session runs; null otherwise.
    [[nodiscard]] const std::shared_ptr<VideoFrames> &preview() const { return m_preview; }
    [[nodiscard]] bool hasCamera() const { return m_hasCamera; }
    /// Those of the next session; empty for the system's own choice.
    void setDevices(const QString &cameraId, const QString &microphoneId);

    void startRecording(const QString &url);
    /// The session keeps running, ready for another film.
    void stopRecording();
    /// The view goes away: ends what is recorded, calls off what has not begun, and lets the camera go.
    void stopSession();

Q_SIGNALS:
    void stateChanged();
    void previewChanged();

private:
    struct Core;

    void setState(State state);
    void end(const QString &url, const std::optional<MediaFailure> &failure);
    void setPreview(const std::shared_ptr<VideoFrames> &preview, bool hasCamera);

    Video &m_video;
    SessionQueue &m_queue;
    std::shared_ptr<Core> m_core;
    State m_state = State::idle;
    QString m_url;
    std::optional<MediaFailure> m_failure;
    std::shared_ptr<VideoFrames> m_preview;
    bool m_hasCamera = false;
    QString m_cameraId;
    QString m_microphoneId;
};

} // namespace tallowby
