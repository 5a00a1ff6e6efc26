#pragma once

#include "platform/desktop/Audio.h"
#include "platform/linux/gstreamer/Pipeline.h"

namespace tallowby {

class GstAudioPlayer final : public AudioPlayer {
public:
    /// Waits until the file has been opened, which takes some milliseconds.
    [[nodiscard]] static MediaResult<AudioPlayer> make(const QString &path, const QString &sink);
    GstAudioPlayer(std::unique_ptr<Pipeline> pipeline, double duration);

    void play() override;
    void pause() override;
    [[nodiscard]] bool isPlaying() override;
    [[nodiscard]] double duration() const override { return m_duration; }
    [[nodiscard]] double currentTime() override;
    void setCurrentTime(double seconds) override;
    void setRate(double rate) override;

private:
    void listen();
    void seek(double seconds);

    std::unique_ptr<Pipeline> m_pipeline;
    double m_duration;
    double m_rate = 1;
    bool m_isPlaying = false;
    bool m_isAtEnd = false;
};

} // namespace tallowby
