#include "platform/linux/sound/GstAudio.h"

#include "platform/linux/sound/GstAudioPlayer.h"
#include "platform/linux/sound/GstAudioRecorder.h"

#include <QRegularExpression>

#include <utility>

namespace tallowby {

namespace {

constexpr std::chrono::milliseconds kIdleThread{2'000};
/// A piece of 20 ms is as fine as is drawn; of a longer file no more are kept than fill some minutes.
constexpr auto kPiece = "20000000";
constexpr qsizetype kMostPieces = 200'000;
constexpr GstClockTime kLongestSilence = 5 * GST_SECOND;

QString fromEnvironment(const char *name, const QString &otherwise) {
    static const QRegularExpression kElement(QStringLiteral("^[a-z0-9]{1,40}$"));
    const QString chosen = qEnvironmentVariable(name);
    return kElement.match(chosen).hasMatch() ? chosen : otherwise;
}

struct DeviceListFree {
    void operator()(GList *list) const { g_list_free_full(list, gst_object_unref); }
};

/// The microphones that are connected now; not what a loudspeaker plays.
QList<GstDevice *> sources(GList *devices) {
    QList<GstDevice *> found;
    for (const GList *item = devices; item; item = item->next) {
        auto *device = GST_DEVICE(item->data);
        GstStructure *properties = gst_device_get_properties(device);
        const char *kind = properties ? gst_structure_get_string(properties, "device.class") : nullptr;
        if (!kind || qstrcmp(kind, "monitor") != 0) {
            found << device;
        }
        if (properties) {
            gst_structure_free(properties);
        }
    }
    return found;
}

std::unique_ptr<GList, DeviceListFree> connectedDevices() {
    const GstPointer<GstDeviceMonitor> monitor(gst_device_monitor_new());
    gst_device_monitor_add_filter(monitor.get(), "Audio/Source", nullptr);
    return std::unique_ptr<GList, DeviceListFree>(gst_device_monitor_get_devices(monitor.get()));
}

QString nameOf(GstDevice *device) {
    char *name = gst_device_get_display_name(device);
    const QString text = QString::fromUtf8(name);
    g_free(name);
    return text;
}

/// Reads a file to its end. Any thread.
QList<float> loudnessOf(const QString &path) {
    QString error;
    const auto pipeline = Pipeline::parse(
        QStringLiteral("filesrc name=file ! decodebin ! audioconvert ! audio/x-raw,channels=1 ! level interval=%1 "
                       "post-messages=true ! fakesink sync=false")
            .arg(QLatin1StringView(kPiece)),
        error);
    if (!pipeline) {
        return {};
    }
    g_object_set(pipeline->element("file").get(), "location", path.toUtf8().constData(), nullptr);
    QList<float> pieces;
    if (!pipeline->setState(GST_STATE_PLAYING)) {
        return {};
    }
    while (pieces.size() < kMostPieces) {
        const auto message =
            pipeline->next(GstMessageType(GST_MESSAGE_ELEMENT | GST_MESSAGE_EOS | GST_MESSAGE_ERROR), kLongestSilence);
        if (!message || GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_ERROR) {
            return {};
        }
        if (GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_EOS) {
            break;
        }
        pieces << loudness(message.get());
    }
    return pieces;
}

} // namespace

GstAudio::GstAudio(QObject *parent)
    : QObject(parent) {
    m_work.setMaxThreadCount(1);
    m_work.setExpiryTimeout(int(kIdleThread.count()));
}

GstAudio::~GstAudio() {
    m_work.waitForDone();
}

void GstAudio::prepare() {
    m_work.start([] { static_cast<void>(loadGStreamer()); });
}

QList<AudioDevice> GstAudio::microphones() {
    if (!loadGStreamer().isEmpty()) {
        return {};
    }
    const auto devices = connectedDevices();
    QList<AudioDevice> found;
    for (GstDevice *device : sources(devices.get())) {
        const QString name = nameOf(device);
        found << AudioDevice{name, name};
    }
    return found;
}

AudioResult<AudioRecorder> GstAudio::makeRecorder(const QString &path, const QString &deviceId) {
    if (const QString error = loadGStreamer(); !error.isEmpty()) {
        return {nullptr, error};
    }
    GstElement *source = nullptr;
    if (const QString chosen = fromEnvironment("TALLOWBY_AUDIO_SOURCE", {}); !chosen.isEmpty()) {
        source = gst_element_factory_make(chosen.toLatin1().constData(), nullptr);
    } else {
        const auto devices = connectedDevices();
        const QList<GstDevice *> found = sources(devices.get());
        if (found.isEmpty()) {
            return {nullptr, QStringLiteral("there is no microphone")};
        }
        for (GstDevice *device : found) {
            if (!deviceId.isEmpty() && nameOf(device) == deviceId) {
                source = gst_device_create_element(device, nullptr);
                break;
            }
        }
        if (!source) {
            source = gst_element_factory_make("autoaudiosrc", nullptr);
        }
    }
    if (!source) {
        return {nullptr, QStringLiteral("there is nothing to record from")};
    }
    return GstAudioRecorder::make(source, path, m_work);
}

AudioResult<AudioPlayer> GstAudio::makePlayer(const QString &path) {
    if (const QString error = loadGStreamer(); !error.isEmpty()) {
        return {nullptr, error};
    }
    return GstAudioPlayer::make(path, fromEnvironment("TALLOWBY_AUDIO_SINK", QStringLiteral("autoaudiosink")));
}

void GstAudio::readLoudness(const QString &path, std::function<void(const QList<float> &)> done) {
    m_work.start([this, path, done = std::move(done)] {
        QMetaObject::invokeMethod(
            this, [pieces = loudnessOf(path), done] { done(pieces); }, Qt::QueuedConnection);
    });
}

} // namespace tallowby
