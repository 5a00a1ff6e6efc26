#include "platform/linux/gstreamer/GstAudioPlayer.h"

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

constexpr GstClockTime kLongestOpening = 2 * GST_SECOND;

} // namespace

MediaResult<AudioPlayer> GstAudioPlayer::make(const QString &path, const QString &sink) {
    QString error;
    auto pipeline = Pipeline::parse(QStringLiteral("filesrc name=file ! decodebin ! audioconvert ! scaletempo ! "
                                                   "audioconvert ! audioresample ! %1 name=out")
                                        .arg(sink),
                                    error);
    if (!pipeline) {
        return {nullptr, {error}};
    }
    const auto out = pipeline->element("out");
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(out.get()), "sync")) {
        g_object_set(out.get(), "sync", TRUE, nullptr);
    }
    g_object_set(pipeline->element("file").get(), "location", path.toUtf8().constData(), nullptr);
    gint64 duration = 0;
    if (!pipeline->setState(GST_STATE_PAUSED) ||
        gst_element_get_state(pipeline->get(), nullptr, nullptr, kLongestOpening) != GST_STATE_CHANGE_SUCCESS ||
        !gst_element_query_duration(pipeline->get(), GST_FORMAT_TIME, &duration)) {
        const auto message = pipeline->next(GST_MESSAGE_ERROR, 0);
        return {nullptr, message ? failureOf(message.get(), MediaFailure::Kind::fileFailed)
                                 : MediaFailure{QStringLiteral("it is no recording"), MediaFailure::Kind::fileFailed}};
    }
    return {std::make_unique<GstAudioPlayer>(std::move(pipeline), double(duration) / GST_SECOND), {}};
}

GstAudioPlayer::GstAudioPlayer(std::unique_ptr<Pipeline> pipeline, double duration)
    : m_pipeline(std::move(pipeline))
    , m_duration(duration) {}

void GstAudioPlayer::play() {
    listen();
    if (std::exchange(m_isAtEnd, false)) {
        seek(0);
    }
    m_isPlaying = m_pipeline->setState(GST_STATE_PLAYING);
}

void GstAudioPlayer::pause() {
    m_pipeline->setState(GST_STATE_PAUSED);
    m_isPlaying = false;
}

bool GstAudioPlayer::isPlaying() {
    listen();
    return m_isPlaying;
}

double GstAudioPlayer::currentTime() {
    listen();
    gint64 position = 0;
    if (m_isAtEnd || !gst_element_query_position(m_pipeline->get(), GST_FORMAT_TIME, &position)) {
        return m_isAtEnd ? m_duration : 0;
    }
    return std::clamp(double(position) / GST_SECOND, 0.0, m_duration);
}

void GstAudioPlayer::setCurrentTime(double seconds) {
    m_isAtEnd = false;
    seek(seconds);
}

void GstAudioPlayer::setRate(double rate) {
    const double time = m_isAtEnd ? 0 : currentTime();
    m_rate = rate;
    if (!m_isAtEnd) {
        seek(time);
    }
}

void GstAudioPlayer::seek(double seconds) {
    const double time = std::clamp(seconds, 0.0, m_duration);
    gst_element_seek(m_pipeline->get(), m_rate, GST_FORMAT_TIME,
                     GstSeekFlags(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE), GST_SEEK_TYPE_SET,
                     gint64(time * GST_SECOND), GST_SEEK_TYPE_NONE, 0);
    // A position that is asked for at once is that of before.
    gst_element_get_state(m_pipeline->get(), nullptr, nullptr, kLongestOpening);
}

void GstAudioPlayer::listen() {
    if (m_pipeline->next(GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR), 0)) {
        m_isAtEnd = true;
        pause();
    }
}

} // namespace tallowby
