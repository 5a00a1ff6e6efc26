#include "platform/linux/gstreamer/GstAudioRecorder.h"

#include "platform/linux/gstreamer/RecordingFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QThreadPool>

#include <utility>

namespace tallowby {

namespace {

constexpr MediaFailure::Kind kDeviceFailed = MediaFailure::Kind::deviceFailed;
/// 96 kbit/s for one voice; the encoder takes a rate in place of a quality.
constexpr QLatin1StringView kSound{
    "audioconvert name=in ! audioresample ! audio/x-raw,rate=44100,channels=1 ! level interval=50000000 "
    "post-messages=true ! queue ! avenc_aac bitrate=96000 ! aacparse ! "};

} // namespace

MediaResult<AudioRecorder> GstAudioRecorder::make(GstElement *source, const QString &path, QThreadPool &work) {
    // The pipeline takes the source over; until then it is ours.
    const GstPointer<GstElement> held(GST_ELEMENT(gst_object_ref_sink(source)));
    QString error;
    auto pipeline = Pipeline::parse(kSound + kRecordingEnd, error);
    if (!pipeline) {
        return {nullptr, {error, MediaFailure::Kind::encoderFailed}};
    }
    gst_bin_add(GST_BIN(pipeline->get()), source);
    if (!gst_element_link(source, pipeline->element("in").get())) {
        return {nullptr, {QStringLiteral("the microphone gives no sound that can be recorded"), kDeviceFailed}};
    }
    if (const auto failure = createRecording(*pipeline, path)) {
        return {nullptr, *failure};
    }
    if (!pipeline->setState(GST_STATE_PAUSED)) {
        const auto message = pipeline->next(GST_MESSAGE_ERROR, 0);
        QFile::remove(path);
        return {nullptr, message ? failureOf(message.get(), kDeviceFailed)
                                 : MediaFailure{QStringLiteral("the microphone does not answer"), kDeviceFailed}};
    }
    return {std::make_unique<GstAudioRecorder>(std::move(pipeline), path, work), {}};
}

GstAudioRecorder::GstAudioRecorder(std::unique_ptr<Pipeline> pipeline, const QString &path, QThreadPool &work)
    : m_pipeline(std::move(pipeline))
    , m_path(path)
    , m_work(work) {}

GstAudioRecorder::~GstAudioRecorder() {
    stop({});
}

bool GstAudioRecorder::record() {
    m_isRecording = m_pipeline && m_pipeline->setState(GST_STATE_PLAYING);
    listen();
    if (!m_isRecording && !m_failure) {
        m_failure = {QStringLiteral("the microphone does not start"), kDeviceFailed};
    }
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

std::optional<MediaFailure> GstAudioRecorder::failure() {
    listen();
    return m_failure;
}

void GstAudioRecorder::listen() {
    if (!m_pipeline) {
        return;
    }
    constexpr auto kTypes = GstMessageType(GST_MESSAGE_ELEMENT | GST_MESSAGE_ERROR | GST_MESSAGE_EOS);
    while (const auto message = m_pipeline->next(kTypes, 0)) {
        const GstMessageType type = GST_MESSAGE_TYPE(message.get());
        if (type == GST_MESSAGE_ELEMENT) {
            m_level = double(loudness(message.get()));
        } else if (!m_failure) {
            // Errors that follow are the consequences of the first one.
            m_failure = type == GST_MESSAGE_ERROR
                            ? failureOf(message.get(), kDeviceFailed)
                            : MediaFailure{QStringLiteral("the microphone gives no more"), kDeviceFailed};
        }
    }
}

void GstAudioRecorder::stop(Finished finished) {
    if (!m_pipeline) {
        return;
    }
    listen();
    if (!m_isRecording && !m_failure) {
        m_failure = {QStringLiteral("it was not started"), kDeviceFailed};
    }
    m_isRecording = false;
    // A job is copied, so the pipeline is shared with it.
    const std::shared_ptr<Pipeline> pipeline = std::move(m_pipeline);
    // At once: nothing that is said from now on is in the file, however long its turn takes to come.
    gst_element_send_event(pipeline->get(), gst_event_new_eos());
    m_work.start([pipeline, path = m_path, failure = m_failure, finished = std::move(finished)] {
        const std::optional<MediaFailure> end = closeRecording(*pipeline, path, failure);
        if (finished) {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [finished, end] { finished(end); }, Qt::QueuedConnection);
        }
    });
}

} // namespace tallowby
