#include "platform/linux/gstreamer/GstMovie.h"

#include <QFile>
#include <QThreadPool>

#include <utility>

#include <gst/app/gstappsrc.h>

namespace tallowby {

namespace {

constexpr GstClockTime kLongestEnd = 5 * GST_SECOND;
constexpr auto kPictures =
    "appsrc name=pictures is-live=true format=time max-bytes=50000000 leaky-type=upstream ! queue ! "
    "openh264enc bitrate=1500000 complexity=low gop-size=30 ! h264parse ! to. ";
constexpr auto kSound = "appsrc name=sound is-live=true format=time ! queue ! audioconvert ! avenc_aac bitrate=96000 ! "
                        "aacparse ! to. ";

} // namespace

std::shared_ptr<GstMovie> GstMovie::make(const QString &path, GstClockTime start, bool hasPictures, bool hasSound,
                                         CaptureSession::Finished finished) {
    const QString fail = QStringLiteral("there is neither a camera nor a microphone");
    if (!hasPictures && !hasSound) {
        finished(fail);
        return nullptr;
    }
    QString error;
    auto pipeline =
        Pipeline::parse(QLatin1StringView(hasPictures ? kPictures : "") + QLatin1StringView(hasSound ? kSound : "") +
                            QLatin1StringView("mp4mux name=to fragment-duration=1000 "
                                              "fragment-mode=first-moov-then-finalise ! filesink name=file"),
                        error);
    QFile file(path);
    if (pipeline && !file.open(QFile::WriteOnly | QFile::NewOnly, QFile::ReadOwner | QFile::WriteOwner)) {
        error = file.errorString();
        pipeline.reset();
    }
    if (pipeline) {
        g_object_set(pipeline->element("file").get(), "location", path.toUtf8().constData(), nullptr);
        if (!pipeline->setState(GST_STATE_PLAYING)) {
            error = QStringLiteral("the file cannot be written");
            pipeline.reset();
        }
    }
    if (!pipeline) {
        finished(error);
        return nullptr;
    }
    return std::make_shared<GstMovie>(std::move(pipeline), start, std::move(finished));
}

GstMovie::GstMovie(std::unique_ptr<Pipeline> pipeline, GstClockTime start, CaptureSession::Finished finished)
    : m_pipeline(std::move(pipeline))
    , m_pictures(m_pipeline->element("pictures"))
    , m_sound(m_pipeline->element("sound"))
    , m_start(start)
    , m_finished(std::move(finished)) {}

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
    m_hasContent = true;
    gst_app_src_push_sample(GST_APP_SRC(source.get()), moved);
    gst_sample_unref(moved);
}

void GstMovie::finish(QThreadPool &work) {
    if (m_isFinishing.exchange(true)) {
        return;
    }
    work.start([movie = shared_from_this()] {
        for (const auto *source : {&movie->m_pictures, &movie->m_sound}) {
            if (*source) {
                gst_app_src_end_of_stream(GST_APP_SRC(source->get()));
            }
        }
        const auto end = movie->m_pipeline->next(GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR), kLongestEnd);
        const bool isWhole = end && GST_MESSAGE_TYPE(end.get()) == GST_MESSAGE_EOS && movie->m_hasContent;
        movie->m_pipeline->setState(GST_STATE_NULL);
        QString error = QStringLiteral("the devices gave nothing");
        if (end && GST_MESSAGE_TYPE(end.get()) == GST_MESSAGE_ERROR) {
            error = errorText(end.get());
        }
        movie->m_finished(isWhole ? std::nullopt : std::optional(error));
    });
}

} // namespace tallowby
