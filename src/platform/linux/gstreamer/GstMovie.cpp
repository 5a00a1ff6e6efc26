#include "platform/linux/gstreamer/GstMovie.h"

#include "platform/linux/gstreamer/RecordingFile.h"

#include <QThreadPool>

#include <utility>

#include <gst/app/gstappsrc.h>

namespace tallowby {

namespace {

constexpr auto kPictures =
    "appsrc name=pictures is-live=true format=time max-bytes=50000000 leaky-type=upstream ! queue ! "
    "openh264enc bitrate=1500000 complexity=low gop-size=30 ! h264parse ! to. ";
constexpr auto kSound = "appsrc name=sound is-live=true format=time ! queue ! audioconvert ! avenc_aac bitrate=96000 ! "
                        "aacparse ! to. ";

} // namespace

std::shared_ptr<GstMovie> GstMovie::make(const QString &path, GstClockTime start, bool hasPictures, bool hasSound,
                                         QThreadPool &work, CaptureSession::Finished finished) {
    if (!hasPictures && !hasSound) {
        finished(
            MediaFailure{QStringLiteral("there is neither a camera nor a microphone"), MediaFailure::Kind::noDevice});
        return nullptr;
    }
    QString error;
    auto pipeline = Pipeline::parse(QLatin1StringView(hasPictures ? kPictures : "") +
                                        QLatin1StringView(hasSound ? kSound : "") + kRecordingEnd,
                                    error);
    if (!pipeline) {
        finished(MediaFailure{error, MediaFailure::Kind::encoderFailed});
        return nullptr;
    }
    if (const auto failure = createRecording(*pipeline, path)) {
        finished(failure);
        return nullptr;
    }
    auto movie = std::make_shared<GstMovie>(std::move(pipeline), path, start, work, std::move(finished));
    if (!movie->m_pipeline->setState(GST_STATE_PLAYING)) {
        movie->finish(MediaFailure{QStringLiteral("the film cannot be begun"), MediaFailure::Kind::encoderFailed});
    }
    return movie;
}

GstMovie::GstMovie(std::unique_ptr<Pipeline> pipeline, const QString &path, GstClockTime start, QThreadPool &work,
                   CaptureSession::Finished finished)
    : m_pipeline(std::move(pipeline))
    , m_path(path)
    , m_pictures(m_pipeline->element("pictures"))
    , m_sound(m_pipeline->element("sound"))
    , m_start(start)
    , m_work(work)
    , m_finished(std::move(finished)) {
    const GstPointer<GstBus> bus(gst_element_get_bus(m_pipeline->get()));
    gst_bus_set_sync_handler(bus.get(), &GstMovie::onMessage, this, nullptr);
}

GstMovie::~GstMovie() {
    // Nobody calls back any more once the pipeline has come to rest.
    m_pipeline->setState(GST_STATE_NULL);
}

GstBusSyncReply GstMovie::onMessage(GstBus *, GstMessage *message, gpointer movie) {
    const GstMessageType type = GST_MESSAGE_TYPE(message);
    if (type != GST_MESSAGE_ERROR && type != GST_MESSAGE_EOS) {
        gst_message_unref(message);
        return GST_BUS_DROP;
    }
    // What is to be filmed from here on would be in no file. None is left when the film itself is on its way out.
    const std::shared_ptr<GstMovie> self = static_cast<GstMovie *>(movie)->weak_from_this().lock();
    if (self && type == GST_MESSAGE_ERROR) {
        self->finish(failureOf(message, MediaFailure::Kind::encoderFailed));
    }
    return GST_BUS_PASS;
}

void GstMovie::add(GstSample *sample, bool isPicture) {
    const auto &source = isPicture ? m_pictures : m_sound;
    GstBuffer *came = gst_sample_get_buffer(sample);
    const GstClockTime time = GST_BUFFER_PTS(came);
    if (!source || m_isFinishing || !GST_CLOCK_TIME_IS_VALID(time) || time < m_start) {
        return;
    }
    // The memory is shared, only the time is another one.
    GstBuffer *buffer = gst_buffer_copy(came);
    GST_BUFFER_PTS(buffer) = time - m_start;
    GST_BUFFER_DTS(buffer) = GST_CLOCK_TIME_NONE;
    GstSample *moved = gst_sample_new(buffer, gst_sample_get_caps(sample), nullptr, nullptr);
    gst_buffer_unref(buffer);
    gst_app_src_push_sample(GST_APP_SRC(source.get()), moved);
    gst_sample_unref(moved);
}

void GstMovie::finish(const std::optional<MediaFailure> &failure) {
    if (m_isFinishing.exchange(true)) {
        return;
    }
    m_work.start([movie = shared_from_this(), failure] {
        for (const auto *source : {&movie->m_pictures, &movie->m_sound}) {
            if (*source) {
                gst_app_src_end_of_stream(GST_APP_SRC(source->get()));
            }
        }
        movie->m_finished(closeRecording(*movie->m_pipeline, movie->m_path, failure));
    });
}

} // namespace tallowby
