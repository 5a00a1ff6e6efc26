#pragma once

#include "platform/desktop/Video.h"
#include "platform/linux/gstreamer/Pipeline.h"

#include <mutex>
#include <optional>

class QThreadPool;

namespace tallowby {

class GstMovie;

/// One pipeline runs as long as the session does and hands over pictures and sound as they are; what is recorded goes
/// from there into a pipeline of its own, so that it can begin and end while the camera runs on.
class GstCaptureSession final : public CaptureSession {
public:
    /// `work`, in which files are finished, outlives the session.
    GstCaptureSession(const QString &cameraId, const QString &microphoneId, QThreadPool &work);
    ~GstCaptureSession() override;

    void startRunning() override;
    void stopRunning() override;
    [[nodiscard]] std::shared_ptr<VideoFrames> frames() const override { return m_frames; }
    [[nodiscard]] bool hasCamera() const override { return m_hasCamera; }
    void startRecording(const QString &path, Finished finished) override;
    [[nodiscard]] bool isRecording() const override;
    void stopRecording() override;

private:
    /// One of the pipeline's streaming threads hands over what came.
    void take(GstElement *sink, bool isPicture);
    /// Ends what is recorded because a device has gone, if one has.
    void endIfBroken();
    static GstBusSyncReply onMessage(GstBus *bus, GstMessage *message, gpointer session);
    [[nodiscard]] bool add(GstElement *source, const char *description, const char *sink, bool isPicture);

    const QString m_cameraId;
    const QString m_microphoneId;
    QThreadPool &m_work;
    const std::shared_ptr<VideoFrames> m_frames = VideoFrames::make();
    std::unique_ptr<Pipeline> m_pipeline;
    bool m_hasCamera = false;
    bool m_hasMicrophone = false;

    mutable std::mutex m_mutex;
    /// Why the pipeline gives no more. Guarded.
    std::optional<MediaFailure> m_failure;
    /// What is being recorded. Guarded.
    std::shared_ptr<GstMovie> m_movie;
};

} // namespace tallowby
