#include "platform/linux/gstreamer/GstVideo.h"

#include "platform/linux/gstreamer/Devices.h"
#include "platform/linux/gstreamer/GstCaptureSession.h"
#include "platform/linux/gstreamer/GstMoviePlayer.h"
#include "platform/linux/gstreamer/RecordingFile.h"
#include "platform/linux/portal/CameraPortal.h"

#include <QDir>

#include <algorithm>

#include <unistd.h>

namespace tallowby {

namespace {

constexpr std::chrono::milliseconds kIdleThread{2'000};
const QString kDevices = QStringLiteral("/dev");

} // namespace

GstVideo::GstVideo()
    : m_portal(isSandboxed() ? std::make_unique<CameraPortal>() : nullptr) {
    // One that reads does not keep a film from its end.
    m_work.setMaxThreadCount(2);
    m_work.setExpiryTimeout(int(kIdleThread.count()));
}

GstVideo::~GstVideo() {
    m_work.waitForDone();
}

CameraAccess GstVideo::cameraAccess() {
    if (m_portal) {
        return m_portal->access();
    }
    // Outside a sandbox a person may use a camera when the group of its device file lets them.
    const QStringList cameras = QDir(kDevices).entryList({QStringLiteral("video*")}, QDir::System);
    const bool isDenied = !cameras.isEmpty() && std::ranges::none_of(cameras, [](const QString &name) {
        return access((kDevices + u'/' + name).toLocal8Bit().constData(), R_OK | W_OK) == 0;
    });
    return isDenied && qEnvironmentVariableIsEmpty("TALLOWBY_VIDEO_SOURCE") ? CameraAccess::denied
                                                                            : CameraAccess::authorized;
}

void GstVideo::requestCameraAccess(std::function<void(bool)> answer) {
    if (m_portal && m_portal->access() == CameraAccess::notDetermined) {
        m_portal->ask(std::move(answer));
    } else {
        answer(cameraAccess() == CameraAccess::authorized);
    }
}

QList<MediaDevice> GstVideo::cameras() {
    return loadGStreamer().isEmpty() ? connectedDevices(DeviceKind::camera) : QList<MediaDevice>();
}

std::unique_ptr<CaptureSession> GstVideo::makeSession(const QString &cameraId, const QString &microphoneId) {
    return std::make_unique<GstCaptureSession>(cameraId, microphoneId, m_work);
}

MediaResult<MoviePlayer> GstVideo::makePlayer(const QString &path) {
    if (const QString error = loadGStreamer(); !error.isEmpty()) {
        return {nullptr, {error}};
    }
    return GstMoviePlayer::make(path, elementFromEnvironment("TALLOWBY_AUDIO_SINK", QStringLiteral("autoaudiosink")));
}

void GstVideo::readLength(const QString &path, std::function<void(std::optional<double>)> done) {
    readLengthLater(m_work, path, done);
}

} // namespace tallowby
