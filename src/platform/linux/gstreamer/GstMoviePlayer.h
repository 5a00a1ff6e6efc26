#pragma once

#include "platform/desktop/Video.h"
#include "platform/linux/gstreamer/Pipeline.h"

#include <QObject>

namespace tallowby {

/// Decoders and threads are there only while it plays; between, the last picture is.
class GstMoviePlayer final : public QObject, public MoviePlayer {
    Q_OBJECT

public:
    /// Returns before the file has been opened; one that cannot be played comes to its end at once.
    [[nodiscard]] static MediaResult<MoviePlayer> make(const QString &path, const QString &audioSink);
    /// `pictures` is the pipeline's, and holds the sink of that name.
    GstMoviePlayer(std::unique_ptr<Pipeline> pipeline, GstElement *pictures);
    ~GstMoviePlayer() override;

    [[nodiscard]] std::shared_ptr<VideoFrames> frames() const override { return m_frames; }
    void playFromStart() override;
    void pause() override;
    void onEnd(std::function<void(const std::optional<MediaFailure> &)> ended) override { m_ended = std::move(ended); }

private:
    static GstBusSyncReply onMessage(GstBus *bus, GstMessage *message, gpointer player);
    void end(const std::optional<MediaFailure> &failure);

    std::unique_ptr<Pipeline> m_pipeline;
    std::shared_ptr<VideoFrames> m_frames = VideoFrames::make();
    std::function<void(const std::optional<MediaFailure> &)> m_ended;
    bool m_isPlaying = false;
};

} // namespace tallowby
