#pragma once

#include "platform/desktop/Audio.h"
#include "platform/linux/gstreamer/Pipeline.h"

class QThreadPool;

namespace tallowby {

/// Sound from one source, on its way into a file as RecordingFile.h describes it.
class GstAudioRecorder final : public AudioRecorder {
public:
    /// Takes over the source. `work`, in which the file is finished, outlives the recorder.
    [[nodiscard]] static MediaResult<AudioRecorder> make(GstElement *source, const QString &path, QThreadPool &work);
    GstAudioRecorder(std::unique_ptr<Pipeline> pipeline, const QString &path, QThreadPool &work);
    ~GstAudioRecorder() override;

    bool record() override;
    [[nodiscard]] double currentTime() override;
    [[nodiscard]] double level() override;
    [[nodiscard]] std::optional<MediaFailure> failure() override;
    void stop(Finished finished) override;

private:
    void listen();

    std::unique_ptr<Pipeline> m_pipeline;
    const QString m_path;
    QThreadPool &m_work;
    bool m_isRecording = false;
    std::optional<MediaFailure> m_failure;
    double m_level = 0;
};

} // namespace tallowby
