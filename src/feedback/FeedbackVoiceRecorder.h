#pragma once

#include "platform/Scheduler.h"
#include "platform/desktop/Audio.h"

#include <QObject>
#include <QQmlEngine>

#include <memory>
#include <optional>

namespace tallowby {

/// The spoken part of an answer, in a file of the media folder until it is sent or thrown away. Main thread only.
class FeedbackVoiceRecorder : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The survey holds it")
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY changed)
    /// There is something to be sent; its file may still be on its way to its end.
    Q_PROPERTY(bool hasRecording READ hasRecording NOTIFY changed)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY changed)
    /// Why the last recording came to nothing or ended early; empty for nothing to be said.
    Q_PROPERTY(QString mishap READ mishap NOTIFY changed)
    Q_PROPERTY(QString elapsedText READ elapsedText NOTIFY changed)
    Q_PROPERTY(QString durationText READ durationText NOTIFY changed)
    /// How loud it is, from 0 to 1.
    Q_PROPERTY(qreal level READ level NOTIFY changed)

public:
    static constexpr std::chrono::milliseconds kTick{100};

    /// Both must outlive the recorder.
    FeedbackVoiceRecorder(Audio &audio, Scheduler &scheduler, QObject *parent = nullptr);
    ~FeedbackVoiceRecorder() override;

    [[nodiscard]] bool isRecording() const { return m_recorder != nullptr; }
    [[nodiscard]] bool hasRecording() const { return m_recordedFile.has_value() && !isRecording(); }
    [[nodiscard]] const QString &mishap() const { return m_mishap; }
    [[nodiscard]] bool isPlaying() const { return m_player && m_player->isPlaying(); }
    /// Seconds.
    [[nodiscard]] double elapsed() const { return m_elapsed; }
    [[nodiscard]] QString elapsedText() const;
    [[nodiscard]] QString durationText() const;
    [[nodiscard]] double level() const { return m_level; }
    /// None while it is recorded, or not whole yet.
    [[nodiscard]] std::optional<QString> recordedFile() const;

    /// In place of what was recorded before, which is thrown away once there is something better.
    Q_INVOKABLE void startRecording();
    Q_INVOKABLE void stopRecording();
    Q_INVOKABLE void togglePlay();
    /// Throws the recording away, file and all.
    Q_INVOKABLE void discard();
    /// It was sent, and its file is gone.
    void forget();

Q_SIGNALS:
    void changed();

private:
    void tick();
    void finish(const QString &file, const std::optional<MediaFailure> &failure);

    Audio &m_audio;
    Scheduler &m_scheduler;
    std::unique_ptr<AudioRecorder> m_recorder;
    std::unique_ptr<AudioPlayer> m_player;
    ScheduledCall m_ticker;
    double m_elapsed = 0;
    double m_duration = 0;
    double m_level = 0;
    std::optional<QString> m_recordedFile;
    bool m_isFinishing = false;
    /// The recording that the current one is to replace, and its duration.
    std::optional<QString> m_fileBefore;
    double m_durationBefore = 0;
    QString m_mishap;
};

} // namespace tallowby
