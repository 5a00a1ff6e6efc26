#pragma once

#include "platform/desktop/Video.h"
#include "platform/linux/gstreamer/Pipeline.h"

#include <atomic>

class QThreadPool;

namespace tallowby {

/// A film on its way into a file, in pieces of a second as a voice note is. Pictures and sound may come from different
/// threads.
class GstMovie : public std::enable_shared_from_this<GstMovie> {
public:
    /// Null, after `finished` was told why, when there is no way to write it. `start` is the running time of what comes
    /// at which the film begins.
    [[nodiscard]] static std::shared_ptr<GstMovie> make(const QString &path, GstClockTime start, bool hasPictures,
                                                        bool hasSound, CaptureSession::Finished finished);
    GstMovie(std::unique_ptr<Pipeline> pipeline, GstClockTime start, CaptureSession::Finished finished);

    /// What came before the start is dropped.
    void add(GstSample *sample, bool isPicture);
    /// Brings the file to its end and tells so, both by a thread of `work`. Once.
    void finish(QThreadPool &work);

private:
    const std::unique_ptr<Pipeline> m_pipeline;
    const GstPointer<GstElement> m_pictures;
    const GstPointer<GstElement> m_sound;
    const GstClockTime m_start;
    const CaptureSession::Finished m_finished;
    std::atomic<bool> m_hasContent = false;
    std::atomic<bool> m_isFinishing = false;
};

} // namespace tallowby
