#include "platform/linux/gstreamer/GstCaptureSession.h"

#include "platform/linux/gstreamer/Devices.h"
#include "platform/linux/gstreamer/GstMovie.h"
#include "platform/linux/gstreamer/GstPictures.h"

#include <QThreadPool>

#include <utility>

#include <gst/app/gstappsink.h>

namespace tallowby {

namespace {

/// As the medium preset of a capture session: 480 × 360 to 640 × 480 at 30 pictures a second, whatever the shape of the
/// camera's picture.
constexpr auto kPictures =
    "videoconvert ! videoscale ! videorate ! "
    "video/x-raw,format=I420,width=[480,640],height=[360,480],framerate=30/1,pixel-aspect-ratio=1/1 ! "
    "tee name=split ! queue leaky=downstream max-size-buffers=1 ! videoconvert ! video/x-raw,format=BGRx ! "
    "appsink name=preview sync=false drop=true max-buffers=1 "
    "split. ! queue ! appsink name=pictures sync=false drop=true max-buffers=30";
constexpr auto kSound = "audioconvert ! audioresample ! audio/x-raw,format=S16LE,rate=44100,channels=1 ! "
                        "queue ! appsink name=sound sync=false drop=true max-buffers=100";

} // namespace

GstCaptureSession::GstCaptureSession(const QString &cameraId, const QString &microphoneId, QThreadPool &work)
    : m_cameraId(cameraId)
    , m_microphoneId(microphoneId)
    , m_work(work) {}

GstCaptureSession::~GstCaptureSession() {
    stopRecording();
    stopRunning();
}

void GstCaptureSession::startRunning() {
    if (!loadGStreamer().isEmpty() || m_pipeline) {
        return;
    }
    m_pipeline = std::make_unique<Pipeline>(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
    const GstPointer<GstBus> bus(gst_element_get_bus(m_pipeline->get()));
    gst_bus_set_sync_handler(bus.get(), &GstCaptureSession::onMessage, this, nullptr);
    m_hasCamera = add(makeSource(DeviceKind::camera, m_cameraId), kPictures, "pictures", true);
    m_hasMicrophone = add(makeSource(DeviceKind::microphone, m_microphoneId), kSound, "sound", false);
    if (m_hasCamera) {
        connectPictures(m_pipeline->element("preview").get(), m_frames);
    }
    m_pipeline->setState(GST_STATE_PLAYING);
}

bool GstCaptureSession::add(GstElement *source, const char *description, const char *sinkName, bool isPicture) {
    if (!source) {
        return false;
    }
    GstElement *rest = gst_parse_bin_from_description(description, TRUE, nullptr);
    // A device that is busy, or not ours to use, says so here; then there is only the other one.
    const bool isOpen = rest && gst_element_set_state(source, GST_STATE_READY) != GST_STATE_CHANGE_FAILURE;
    if (!isOpen) {
        gst_element_set_state(source, GST_STATE_NULL);
        gst_object_unref(gst_object_ref_sink(source));
        if (rest) {
            gst_object_unref(gst_object_ref_sink(rest));
        }
        return false;
    }
    gst_bin_add_many(GST_BIN(m_pipeline->get()), source, rest, nullptr);
    if (!gst_element_link(source, rest)) {
        gst_element_set_state(source, GST_STATE_NULL);
        gst_bin_remove_many(GST_BIN(m_pipeline->get()), source, rest, nullptr);
        return false;
    }
    const auto sink = m_pipeline->element(sinkName);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = [](GstAppSink *from, gpointer data) {
        const auto *taker = static_cast<std::pair<GstCaptureSession *, bool> *>(data);
        taker->first->take(GST_ELEMENT(from), taker->second);
        return GST_FLOW_OK;
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink.get()), &callbacks,
                               new std::pair<GstCaptureSession *, bool>(this, isPicture),
                               [](gpointer data) { delete static_cast<std::pair<GstCaptureSession *, bool> *>(data); });
    return true;
}

void GstCaptureSession::take(GstElement *sink, bool isPicture) {
    GstSample *sample = gst_app_sink_pull_sample(GST_APP_SINK(sink));
    if (!sample) {
        return;
    }
    std::shared_ptr<GstMovie> movie;
    {
        const std::lock_guard lock(m_mutex);
        movie = m_movie;
    }
    if (movie) {
        movie->add(sample, isPicture);
    }
    gst_sample_unref(sample);
}

GstBusSyncReply GstCaptureSession::onMessage(GstBus *, GstMessage *message, gpointer session) {
    const GstMessageType type = GST_MESSAGE_TYPE(message);
    if (type == GST_MESSAGE_ERROR || type == GST_MESSAGE_EOS) {
        constexpr auto kDeviceFailed = MediaFailure::Kind::deviceFailed;
        auto *self = static_cast<GstCaptureSession *>(session);
        {
            const std::lock_guard lock(self->m_mutex);
            if (!self->m_failure) {
                self->m_failure = type == GST_MESSAGE_ERROR
                                      ? failureOf(message, kDeviceFailed)
                                      : MediaFailure{QStringLiteral("a device gives no more"), kDeviceFailed};
            }
        }
        self->endIfBroken();
    }
    gst_message_unref(message);
    return GST_BUS_DROP;
}

void GstCaptureSession::endIfBroken() {
    std::shared_ptr<GstMovie> movie;
    std::optional<MediaFailure> failure;
    {
        const std::lock_guard lock(m_mutex);
        if (m_failure) {
            failure = m_failure;
            movie = std::exchange(m_movie, nullptr);
        }
    }
    if (movie) {
        movie->finish(failure);
    }
}

void GstCaptureSession::stopRunning() {
    m_pipeline.reset();
    m_hasCamera = false;
    m_hasMicrophone = false;
}

void GstCaptureSession::startRecording(const QString &path, Finished finished) {
    bool isBroken = false;
    {
        const std::lock_guard lock(m_mutex);
        isBroken = m_failure.has_value();
    }
    if (isBroken) {
        stopRunning();
        {
            const std::lock_guard lock(m_mutex);
            m_failure.reset();
        }
        startRunning();
    }
    const GstClockTime now = m_pipeline ? gst_element_get_current_running_time(m_pipeline->get()) : 0;
    auto movie = GstMovie::make(path, GST_CLOCK_TIME_IS_VALID(now) ? now : 0, m_hasCamera, m_hasMicrophone, m_work,
                                std::move(finished));
    {
        const std::lock_guard lock(m_mutex);
        m_movie = std::move(movie);
    }
    // A device may have failed before there was a film to be ended.
    endIfBroken();
}

bool GstCaptureSession::isRecording() const {
    const std::lock_guard lock(m_mutex);
    return m_movie && !m_movie->isFinishing();
}

void GstCaptureSession::stopRecording() {
    std::shared_ptr<GstMovie> movie;
    {
        const std::lock_guard lock(m_mutex);
        movie = std::exchange(m_movie, nullptr);
    }
    if (movie) {
        movie->finish();
    }
}

} // namespace tallowby
