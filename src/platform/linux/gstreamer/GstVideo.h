#pragma once

#include "platform/desktop/Video.h"

#include <QThreadPool>

#include <memory>

namespace tallowby {

class CameraPortal;

/// Films by GStreamer. `TALLOWBY_VIDEO_SOURCE` in the environment names an element in place of the camera; for sound
/// see GstAudio. In a sandbox the desktop portal is asked before a camera is used.
class GstVideo final : public Video {
public:
    GstVideo();
    /// Waits until films that were stopped are whole.
    ~GstVideo() override;

    [[nodiscard]] CameraAccess cameraAccess() override;
    void requestCameraAccess(std::function<void(bool)> answer) override;
    [[nodiscard]] QList<MediaDevice> cameras() override;
    [[nodiscard]] std::unique_ptr<CaptureSession> makeSession(const QString &cameraId,
                                                              const QString &microphoneId) override;
    [[nodiscard]] MediaResult<MoviePlayer> makePlayer(const QString &path) override;
    void readLength(const QString &path, std::function<void(std::optional<double>)> done) override;

private:
    std::unique_ptr<CameraPortal> m_portal;
    /// Finishes and reads files; has no thread while there is nothing to do.
    QThreadPool m_work;
};

} // namespace tallowby
