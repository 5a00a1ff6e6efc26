#include "platform/linux/gstreamer/GstAudio.h"

#include "platform/linux/gstreamer/Devices.h"
#include "platform/linux/gstreamer/GstAudioPlayer.h"
#include "platform/linux/gstreamer/GstAudioRecorder.h"
#include "platform/linux/gstreamer/RecordingFile.h"

#include <utility>

namespace tallowby {

namespace {

constexpr std::chrono::milliseconds kIdleThread{2'000};
/// A piece of 20 ms is as fine as is drawn; of a longer file no more are kept than fill some minutes.
constexpr auto kPiece = "20000000";
constexpr qsizetype kMostPieces = 200'000;
constexpr GstClockTime kLongestSilence = 5 * GST_SECOND;

/// Reads a file to its end, or until `isEnding`. Any thread.
QList<float> loudnessOf(const QString &path, const std::atomic<bool> &isEnding) {
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
    while (pieces.size() < kMostPieces && !isEnding) {
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
    for (QThreadPool *pool : {&m_finishers, &m_readers}) {
        pool->setMaxThreadCount(1);
        pool->setExpiryTimeout(int(kIdleThread.count()));
    }
}

GstAudio::~GstAudio() {
    m_isEnding = true;
    m_readers.clear();
    m_readers.waitForDone();
    m_finishers.waitForDone();
}

void GstAudio::prepare() {
    m_readers.start([] { static_cast<void>(loadGStreamer()); });
}

QList<MediaDevice> GstAudio::microphones() {
    return loadGStreamer().isEmpty() ? connectedDevices(DeviceKind::microphone) : QList<MediaDevice>();
}

MediaResult<AudioRecorder> GstAudio::makeRecorder(const QString &path, const QString &deviceId) {
    if (const QString error = loadGStreamer(); !error.isEmpty()) {
        return {nullptr, {error}};
    }
    GstElement *source = makeSource(DeviceKind::microphone, deviceId);
    if (!source) {
        return {nullptr, {QStringLiteral("there is no microphone"), MediaFailure::Kind::noDevice}};
    }
    return GstAudioRecorder::make(source, path, m_finishers);
}

MediaResult<AudioPlayer> GstAudio::makePlayer(const QString &path) {
    if (const QString error = loadGStreamer(); !error.isEmpty()) {
        return {nullptr, {error}};
    }
    return GstAudioPlayer::make(path, elementFromEnvironment("TALLOWBY_AUDIO_SINK", QStringLiteral("autoaudiosink")));
}

void GstAudio::readLoudness(const QString &path, std::function<void(const QList<float> &)> done) {
    m_readers.start([this, path, done = std::move(done)] {
        QMetaObject::invokeMethod(
            this, [pieces = loudnessOf(path, m_isEnding), done] { done(pieces); }, Qt::QueuedConnection);
    });
}

void GstAudio::readLength(const QString &path, std::function<void(std::optional<double>)> done) {
    readLengthLater(m_readers, path, done);
}

} // namespace tallowby
