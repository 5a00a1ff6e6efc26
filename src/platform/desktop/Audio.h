#pragma once

#include "platform/desktop/MediaDevice.h"

#include <functional>
#include <memory>
#include <optional>

namespace tallowby {

/// Sound on its way into a file. Main thread only.
class AudioRecorder {
public:
    /// With a failure when the recording ended early, or when nothing was recorded: a file in which nothing can be
    /// played is removed. Called once, later and on the main thread.
    using Finished = std::function<void(std::optional<MediaFailure> failure)>;

    /// Ends a recording that runs, as `stop` does, without telling anybody.
    virtual ~AudioRecorder() = default;

    /// False when the device gives nothing.
    virtual bool record() = 0;
    /// Seconds recorded so far; 0 before.
    [[nodiscard]] virtual double currentTime() = 0;
    /// How loud it is now, from 0 for silence to 1 for the loudest that can be recorded.
    [[nodiscard]] virtual double level() = 0;
    /// The device has gone, or the file takes no more. What was recorded before is kept; `stop` is still to be called.
    [[nodiscard]] virtual std::optional<MediaFailure> failure() = 0;
    /// Nothing is recorded from now on. `finished` is called once the file is whole.
    virtual void stop(Finished finished) = 0;
};

/// Sound from a file. Main thread only.
class AudioPlayer {
public:
    virtual ~AudioPlayer() = default;

    /// From where it stands; from the beginning once it has come to the end.
    virtual void play() = 0;
    virtual void pause() = 0;
    /// False from the end of the file on.
    [[nodiscard]] virtual bool isPlaying() = 0;
    /// Seconds.
    [[nodiscard]] virtual double duration() const = 0;
    [[nodiscard]] virtual double currentTime() = 0;
    virtual void setCurrentTime(double seconds) = 0;
    /// 1 for as it was recorded. The pitch stays.
    virtual void setRate(double rate) = 0;
};

/// Recording and playing. Nothing is loaded, and no device looked for, until it is asked for. Main thread only.
class Audio {
public:
    virtual ~Audio() = default;

    /// Loads in the background what the first recording or playback would have to wait for.
    virtual void prepare() = 0;
    [[nodiscard]] virtual QList<MediaDevice> microphones() = 0;
    /// Records to a file that does not exist yet: MPEG-4 AAC, 44,100 Hz, one channel. An empty id stands for the
    /// system's choice, as does one that is not connected any more.
    [[nodiscard]] virtual MediaResult<AudioRecorder> makeRecorder(const QString &path, const QString &deviceId) = 0;
    [[nodiscard]] virtual MediaResult<AudioPlayer> makePlayer(const QString &path) = 0;
    /// How loud the file is, from 0 to 1, in pieces of equal length one after another. Read by another thread; `done`
    /// is called later and on the main thread, with nothing when the file cannot be read. Not after the end of this
    /// object.
    virtual void readLoudness(const QString &path, std::function<void(const QList<float> &)> done) = 0;
    /// How many seconds there are to be played in a recording that was interrupted, which is mended so that it can be
    /// sought. Read by another thread; `done` is called later and on the main thread, with nothing when nothing can be
    /// played.
    virtual void readLength(const QString &path, std::function<void(std::optional<double>)> done) = 0;
};

} // namespace tallowby
