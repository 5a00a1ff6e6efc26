#include "platform/linux/gstreamer/GstMoviePlayer.h"

#include "platform/linux/gstreamer/GstPictures.h"

namespace tallowby {

MediaResult<MoviePlayer> GstMoviePlayer::make(const QString &path, const QString &audioSink) {
    QString error;
    auto pipeline = Pipeline::parse(QStringLiteral("playbin"), error);
    if (!pipeline) {
        return {nullptr, {error}};
    }
    GstElement *pictures = gst_parse_bin_from_description(
        "videoconvert ! video/x-raw,format=BGRx ! appsink name=pictures max-buffers=2", TRUE, nullptr);
    GstElement *sound = gst_element_factory_make(audioSink.toLatin1().constData(), nullptr);
    if (!pictures || !sound) {
        return {nullptr, {QStringLiteral("there is nothing to play to")}};
    }
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(sound), "sync")) {
        g_object_set(sound, "sync", TRUE, nullptr);
    }
    char *uri = gst_filename_to_uri(path.toUtf8().constData(), nullptr);
    g_object_set(pipeline->get(), "uri", uri, "video-sink", pictures, "audio-sink", sound, nullptr);
    g_free(uri);
    auto player = std::make_unique<GstMoviePlayer>(std::move(pipeline), pictures);
    // Until it is played only the first picture is wanted.
    player->m_pipeline->setState(GST_STATE_PAUSED);
    return {std::move(player), {}};
}

GstMoviePlayer::GstMoviePlayer(std::unique_ptr<Pipeline> pipeline, GstElement *pictures)
    : m_pipeline(std::move(pipeline)) {
    connectPictures(GstPointer<GstElement>(gst_bin_get_by_name(GST_BIN(pictures), "pictures")).get(), m_frames);
    const GstPointer<GstBus> bus(gst_element_get_bus(m_pipeline->get()));
    gst_bus_set_sync_handler(bus.get(), &GstMoviePlayer::onMessage, this, nullptr);
    connect(m_frames.get(), &VideoFrames::changed, this, [this] {
        if (!m_isPlaying) {
            pause();
        }
    });
}

GstMoviePlayer::~GstMoviePlayer() {
    // Nobody calls back any more once the pipeline has come to rest.
    m_pipeline->setState(GST_STATE_NULL);
    const GstPointer<GstBus> bus(gst_element_get_bus(m_pipeline->get()));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
}

void GstMoviePlayer::playFromStart() {
    m_pipeline->setState(GST_STATE_NULL);
    m_isPlaying = m_pipeline->setState(GST_STATE_PLAYING);
}

void GstMoviePlayer::pause() {
    m_isPlaying = false;
    m_pipeline->setState(GST_STATE_NULL);
}

GstBusSyncReply GstMoviePlayer::onMessage(GstBus *, GstMessage *message, gpointer player) {
    const GstMessageType type = GST_MESSAGE_TYPE(message);
    if (type == GST_MESSAGE_EOS || type == GST_MESSAGE_ERROR) {
        auto *self = static_cast<GstMoviePlayer *>(player);
        const auto failure = type == GST_MESSAGE_ERROR
                                 ? std::optional(failureOf(message, MediaFailure::Kind::fileFailed))
                                 : std::nullopt;
        QMetaObject::invokeMethod(
            self, [self, failure] { self->end(failure); }, Qt::QueuedConnection);
    }
    gst_message_unref(message);
    return GST_BUS_DROP;
}

void GstMoviePlayer::end(const std::optional<MediaFailure> &failure) {
    pause();
    if (m_ended) {
        m_ended(failure);
    }
}

} // namespace tallowby
