#pragma once

#include "platform/desktop/Video.h"
#include "platform/linux/gstreamer/Pipeline.h"

#include <atomic>

class QThreadPool;

namespace tallowby {

/// A film on its way into a file as RecordingFile.h describes it; an encoder or a file that fails ends it. Pictures and
/// sound may come from different threads.
class GstMovie : public std::enable_shared_from_this<GstMovie> {
public:
    /// Null, after `finished` was told why, when there is no way to write it. `start` is the running time of what comes
    /// at which the film begins.
    /// `work`, in which the file is finished, outlives the film.
    [[nodiscard]] static std::shared_ptr<GstMovie> make(const QString &path, GstClockTime start, bool hasPictures,
                                                        bool hasSound, QThreadPool &work,
                                                        CaptureSession::Finished finished);
    GstMovie(std::unique_ptr<Pipeline> pipeline, const QString &path, GstClockTime start, QThreadPool &work,
             CaptureSession::Finished finished);
    ~GstMovie();

    /// What came before the start is dropped.
    void add(GstSample *sample, bool isPicture);
    /// Takes nothing more, brings the file to its end and tells so, with the failure that ends it if there is one.
    /// Once; any thread.
    void finish(const std::optional<MediaFailure> &failure = std::nullopt);
    [[nodiscard]] bool isFinishing() const { return m_isFinishing; }

private:
    static GstBusSyncReply onMessage(GstBus *bus, GstMessage *message, gpointer movie);

    const std::unique_ptr<Pipeline> m_pipeline;
    const QString m_path;
    const GstPointer<GstElement> m_pictures;
    const GstPointer<GstElement> m_sound;
    const GstClockTime m_start;
    QThreadPool &m_work;
    const CaptureSession::Finished m_finished;
    std::atomic<bool> m_isFinishing = false;
};

} // namespace tallowby
