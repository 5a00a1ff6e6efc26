#pragma once

#include "platform/desktop/Audio.h"
#include "platform/linux/gstreamer/Pipeline.h"

class QThreadPool;

namespace tallowby {

/// The file is written in pieces of a second, each of which can be played, and put into its final order at the end:
/// what is there after a crash is a recording, too.
class GstAudioRecorder final : public AudioRecorder {
public:
    /// Takes over the source. `work`, in which the file is finished, outlives the recorder.
    [[nodiscard]] static MediaResult<AudioRecorder> make(GstElement *source, const QString &path, QThreadPool &work);
    GstAudioRecorder(std::unique_ptr<Pipeline> pipeline, QThreadPool &work);
    ~GstAudioRecorder() override;

    bool record() override;
    [[nodiscard]] double currentTime() override;
    [[nodiscard]] double level() override;
    [[nodiscard]] bool hasFailed() override;
    void stop(std::function<void()> finished) override;

private:
    void listen();

    std::unique_ptr<Pipeline> m_pipeline;
    QThreadPool &m_work;
    bool m_isRecording = false;
    bool m_hasFailed = false;
    double m_level = 0;
};

} // namespace tallowby
