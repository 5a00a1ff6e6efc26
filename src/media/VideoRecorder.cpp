#include "media/VideoRecorder.h"

#include "platform/Log.h"

#include <QPointer>

#include <atomic>
#include <utility>

namespace tallowby {

/// What the session queue knows. Everything in it belongs to the queue, but for what is constant or atomic.
struct VideoRecorder::Core : std::enable_shared_from_this<Core> {
    using Weak = std::weak_ptr<Core>;

    Core(VideoRecorder *itsRecorder, Video &itsVideo, SessionQueue &itsQueue)
        : recorder(itsRecorder)
        , video(itsVideo)
        , queue(itsQueue) {}

    /// On the queue, as long as there is a recorder.
    static void async(const Weak &weak, SessionQueue &queue, std::function<void(Core &)> job) {
        queue.async([weak, job = std::move(job)] {
            const std::shared_ptr<Core> core = weak.lock();
            if (core && !core->isGone) {
                job(*core);
            }
        });
    }
    /// On the main thread, as long as there is a recorder.
    void tell(std::function<void(VideoRecorder &)> job) {
        queue.onMain([recorder = recorder, job = std::move(job)] {
            if (recorder) {
                job(*recorder);
            }
        });
    }

    void setupAndRecord(const QString &url, int itsAttempt, const QString &cameraId, const QString &microphoneId) {
        if (session) {
            record(url, itsAttempt);
            return;
        }
        if (isCalledOff(itsAttempt)) {
            return;
        }
        session = video.makeSession(cameraId, microphoneId);
        session->startRunning();
        tell([frames = session->frames(), hasCamera = session->hasCamera()](VideoRecorder &told) {
            told.setPreview(frames, hasCamera);
        });
        queue.sleepThen(kWarmUp, [core = shared_from_this(), url, itsAttempt] {
            if (!core->isGone) {
                core->record(url, itsAttempt);
            }
        });
    }

    /// Whether the view has gone away since; then the note is told that nothing begins.
    bool isCalledOff(int itsAttempt) {
        if (itsAttempt == attempt) {
            return false;
        }
        tell([](VideoRecorder &told) {
            if (told.state() == State::preparing) {
                told.setState(State::idle);
            }
        });
        return true;
    }

    void record(const QString &url, int itsAttempt) {
        if (isCalledOff(itsAttempt) || !session) {
            return;
        }
        tell([](VideoRecorder &told) { told.setState(State::recording); });
        session->startRecording(url, [weak = weak_from_this(), url](const std::optional<MediaFailure> &failure) {
            if (failure) {
                logLine(QString(u"[VideoRecorder] Record failed: " + failure->text));
            }
            if (const std::shared_ptr<Core> core = weak.lock()) {
                core->didFinish(url, failure);
            }
        });
    }

    /// Any thread.
    void didFinish(const QString &url, const std::optional<MediaFailure> &failure) {
        tell([url, failure](VideoRecorder &told) { told.end(url, failure); });
        async(weak_from_this(), queue, [](Core &core) { core.teardownIfOwed(); });
    }

    void stopSession() {
        if (!session || !session->isRecording()) {
            teardownSession();
            return;
        }
        shouldTeardownAfterStop = true;
        session->stopRecording();
        queue.asyncAfter(kLongestEnd, [weak = weak_from_this()] {
            const std::shared_ptr<Core> core = weak.lock();
            if (core && !core->isGone) {
                core->teardownIfOwed();
            }
        });
    }

    void teardownIfOwed() {
        if (std::exchange(shouldTeardownAfterStop, false)) {
            teardownSession();
        }
    }

    void teardownSession() {
        if (session) {
            session->stopRunning();
            session.reset();
        }
        tell([](VideoRecorder &told) { told.setPreview(nullptr, false); });
    }

    /// Looked at on the main thread only.
    const QPointer<VideoRecorder> recorder;
    Video &video;
    SessionQueue &queue;
    std::atomic<bool> isGone = false;
    /// Goes up with every start and whenever the view goes away; set on the main thread.
    std::atomic<int> attempt = 0;
    std::unique_ptr<CaptureSession> session;
    bool shouldTeardownAfterStop = false;
};

VideoRecorder::VideoRecorder(Video &video, SessionQueue &queue, QObject *parent)
    : QObject(parent)
    , m_video(video)
    , m_queue(queue)
    , m_core(std::make_shared<Core>(this, video, queue)) {}

VideoRecorder::~VideoRecorder() {
    m_core->isGone = true;
    // Devices are closed where they were opened.
    m_queue.async([core = std::move(m_core)] { core->session.reset(); });
}

void VideoRecorder::setDevices(const QString &cameraId, const QString &microphoneId) {
    if (cameraId != m_cameraId || microphoneId != m_microphoneId) {
        m_cameraId = cameraId;
        m_microphoneId = microphoneId;
        stopSession();
    }
}

void VideoRecorder::startRecording(const QString &url) {
    const CameraAccess access = m_video.cameraAccess();
    if (access == CameraAccess::restricted || access == CameraAccess::denied) {
        m_core->tell([](VideoRecorder &told) { told.setState(State::permissionDenied); });
        return;
    }
    m_core->tell([](VideoRecorder &told) { told.setState(State::preparing); });
    m_video.requestCameraAccess([weak = Core::Weak(m_core), &queue = m_queue, url, attempt = ++m_core->attempt,
                                 camera = m_cameraId, microphone = m_microphoneId](bool isGranted) {
        const std::shared_ptr<Core> core = weak.lock();
        if (!core) {
            return;
        }
        if (!isGranted) {
            core->tell([](VideoRecorder &told) { told.setState(State::permissionDenied); });
            return;
        }
        Core::async(weak, queue, [url, attempt, camera, microphone](Core &found) {
            found.setupAndRecord(url, attempt, camera, microphone);
        });
    });
}

void VideoRecorder::stopRecording() {
    Core::async(m_core, m_queue, [](Core &core) {
        if (core.session && core.session->isRecording()) {
            core.session->stopRecording();
        }
    });
}

void VideoRecorder::stopSession() {
    ++m_core->attempt;
    Core::async(m_core, m_queue, [](Core &core) { core.stopSession(); });
}

void VideoRecorder::setState(State state) {
    m_state = state;
    m_url.clear();
    m_failure.reset();
    Q_EMIT stateChanged();
}

void VideoRecorder::end(const QString &url, const std::optional<MediaFailure> &failure) {
    m_state = failure ? State::idle : State::ready;
    m_url = failure ? QString() : url;
    m_failure = failure;
    Q_EMIT stateChanged();
}

void VideoRecorder::setPreview(const std::shared_ptr<VideoFrames> &preview, bool hasCamera) {
    m_preview = preview;
    m_hasCamera = hasCamera;
    Q_EMIT previewChanged();
}

} // namespace tallowby
