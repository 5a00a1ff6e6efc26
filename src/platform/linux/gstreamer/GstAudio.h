#pragma once

#include "platform/desktop/Audio.h"

#include <QObject>
#include <QThreadPool>

#include <atomic>

namespace tallowby {

/// Sound by GStreamer. `TALLOWBY_AUDIO_SOURCE` and `TALLOWBY_AUDIO_SINK` in the environment name elements to record
/// from and to play to, in place of the system's devices.
class GstAudio final : public QObject, public Audio {
    Q_OBJECT

public:
    explicit GstAudio(QObject *parent = nullptr);
    /// Waits until recordings that were stopped are whole.
    ~GstAudio() override;

    void prepare() override;
    [[nodiscard]] QList<MediaDevice> microphones() override;
    [[nodiscard]] MediaResult<AudioRecorder> makeRecorder(const QString &path, const QString &deviceId) override;
    [[nodiscard]] MediaResult<AudioPlayer> makePlayer(const QString &path) override;
    void readLoudness(const QString &path, std::function<void(const QList<float> &)> done) override;
    void readLength(const QString &path, std::function<void(std::optional<double>)> done) override;

private:
    std::atomic<bool> m_isEnding = false;
    /// They have no thread while there is nothing to do. Recordings do not wait to be finished until others are read.
    QThreadPool m_finishers;
    QThreadPool m_readers;
};

} // namespace tallowby
