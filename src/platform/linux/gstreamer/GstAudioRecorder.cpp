#include "platform/linux/gstreamer/GstAudioRecorder.h"

#include <QCoreApplication>
#include <QFile>
#include <QThreadPool>

#include <utility>

namespace tallowby {

namespace {

constexpr GstClockTime kLongestEnd = 5 * GST_SECOND;
/// 96 kbit/s for one voice; the encoder takes a rate in place of a quality.
const QString kDescription =
    QStringLiteral("audioconvert name=in ! audioresample ! audio/x-raw,rate=44100,channels=1 ! level interval=50000000 "
                   "post-messages=true ! queue ! avenc_aac bitrate=96000 ! aacparse ! mp4mux fragment-duration=1000 "
                   "fragment-mode=first-moov-then-finalise ! filesink name=file");

} // namespace

MediaResult<AudioRecorder> GstAudioRecorder::make(GstElement *source, const QString &path, QThreadPool &work) {
    // The pipeline takes the source over; until then it is ours.
    const GstPointer<GstElement> held(GST_ELEMENT(gst_object_ref_sink(source)));
    QString error;
    auto pipeline = Pipeline::parse(kDescription, error);
    if (!pipeline) {
        return {nullptr, error};
    }
    gst_bin_add(GST_BIN(pipeline->get()), source);
    if (!gst_element_link(source, pipeline->element("in").get())) {
        return {nullptr, QStringLiteral("the microphone gives no sound that can be recorded")};
    }
    QFile file(path);
    if (!file.open(QFile::WriteOnly | QFile::NewOnly, QFile::ReadOwner | QFile::WriteOwner)) {
        return {nullptr, file.errorString()};
    }
    file.close();
    g_object_set(pipeline->element("file").get(), "location", path.toUtf8().constData(), nullptr);
    if (!pipeline->setState(GST_STATE_PAUSED)) {
        const auto message = pipeline->next(GST_MESSAGE_ERROR, 0);
        file.remove();
        return {nullptr, message ? errorText(message.get()) : QStringLiteral("the microphone does not answer")};
    }
    return {std::make_unique<GstAudioRecorder>(std::move(pipeline), work), {}};
}

GstAudioRecorder::GstAudioRecorder(std::unique_ptr<Pipeline> pipeline, QThreadPool &work)
    : m_pipeline(std::move(pipeline))
    , m_work(work) {}

GstAudioRecorder::~GstAudioRecorder() {
    stop({});
}

bool GstAudioRecorder::record() {
    m_isRecording = m_pipeline && m_pipeline->setState(GST_STATE_PLAYING);
    return m_isRecording;
}

double GstAudioRecorder::currentTime() {
    listen();
    if (!m_isRecording || !m_pipeline) {
        return 0;
    }
    const GstClockTime time = gst_element_get_current_running_time(m_pipeline->get());
    return GST_CLOCK_TIME_IS_VALID(time) ? double(time) / GST_SECOND : 0;
}

double GstAudioRecorder::level() {
    listen();
    return m_level;
}

bool GstAudioRecorder::hasFailed() {
    listen();
    return m_hasFailed;
}

void GstAudioRecorder::listen() {
    if (!m_pipeline) {
        return;
    }
    while (const auto message = m_pipeline->next(GstMessageType(GST_MESSAGE_ELEMENT | GST_MESSAGE_ERROR), 0)) {
        if (GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_ERROR) {
            m_hasFailed = true;
        } else {
            m_level = double(loudness(message.get()));
        }
    }
}

void GstAudioRecorder::stop(std::function<void()> finished) {
    if (!m_pipeline) {
        return;
    }
    m_isRecording = false;
    // The muxer writes the end of the file, which may take a moment; a job is copied, so the pipeline is shared with
    // it.
    const std::shared_ptr<Pipeline> pipeline = std::move(m_pipeline);
    m_work.start([pipeline, finished = std::move(finished)] {
        gst_element_send_event(pipeline->get(), gst_event_new_eos());
        static_cast<void>(pipeline->next(GST_MESSAGE_EOS, kLongestEnd));
        pipeline->setState(GST_STATE_NULL);
        if (finished) {
            QMetaObject::invokeMethod(QCoreApplication::instance(), finished, Qt::QueuedConnection);
        }
    });
}

} // namespace tallowby
