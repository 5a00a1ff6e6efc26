#pragma once

#include "platform/desktop/MediaDevice.h"
#include "platform/desktop/VideoFrames.h"

#include <functional>
#include <memory>
#include <optional>

namespace tallowby {

/// Whether the program may use cameras.
enum class CameraAccess { notDetermined, restricted, denied, authorized };

/// A camera and a microphone at work, and the film that is made of them. One thread at a time, and not the main one:
/// devices take their time.
class CaptureSession {
public:
    /// With a failure when the film ended early, or when nothing was filmed: a file in which nothing can be played is
    /// removed. Called by any thread.
    using Finished = std::function<void(std::optional<MediaFailure> failure)>;

    /// Stops what runs. A film that is being recorded is kept; nobody is told.
    virtual ~CaptureSession() = default;

    /// From now on there are pictures. Without a camera there are none, and without a microphone no sound: neither is
    /// an error.
    virtual void startRunning() = 0;
    virtual void stopRunning() = 0;
    [[nodiscard]] virtual std::shared_ptr<VideoFrames> frames() const = 0;
    [[nodiscard]] virtual bool hasCamera() const = 0;

    /// To a file that does not exist yet: H.264 and AAC in MPEG-4. `finished` is called once, when the file is whole:
    /// after `stopRecording`, when a device has gone, or when the file takes no more.
    virtual void startRecording(const QString &path, Finished finished) = 0;
    [[nodiscard]] virtual bool isRecording() const = 0;
    virtual void stopRecording() = 0;
};

/// A film from a file. Main thread only.
class MoviePlayer {
public:
    virtual ~MoviePlayer() = default;

    /// The first picture comes soon, before it is played.
    [[nodiscard]] virtual std::shared_ptr<VideoFrames> frames() const = 0;
    virtual void playFromStart() = 0;
    /// The last picture stays.
    virtual void pause() = 0;
    /// Called on the main thread whenever it has come to its end, or cannot go on: then with the reason.
    virtual void onEnd(std::function<void(const std::optional<MediaFailure> &)> ended) = 0;
};

/// Films: recording and playing. Nothing is loaded, and no device looked for, until it is asked for.
class Video {
public:
    virtual ~Video() = default;

    /// Any thread.
    [[nodiscard]] virtual CameraAccess cameraAccess() = 0;
    /// Asks the person where the system does; `answer` is called by any thread, at once where it is known.
    virtual void requestCameraAccess(std::function<void(bool isGranted)> answer) = 0;
    /// Main thread.
    [[nodiscard]] virtual QList<MediaDevice> cameras() = 0;
    /// The thread that is to use the session. Empty ids stand for the system's choice.
    [[nodiscard]] virtual std::unique_ptr<CaptureSession> makeSession(const QString &cameraId,
                                                                      const QString &microphoneId) = 0;
    /// Main thread.
    [[nodiscard]] virtual MediaResult<MoviePlayer> makePlayer(const QString &path) = 0;
    /// As Audio::readLength.
    virtual void readLength(const QString &path, std::function<void(std::optional<double>)> done) = 0;
};

} // namespace tallowby
