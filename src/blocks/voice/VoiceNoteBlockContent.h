#pragma once

#include "canvas/container/BlockBody.h"
#include "platform/NotificationCenter.h"
#include "platform/Scheduler.h"
#include "platform/desktop/Audio.h"

#include <memory>

namespace tallowby {

class VoiceRecordingService;

/// The body of a voice note: records it, shows how loud it is, and plays it.
class VoiceNoteBlockContent : public tallowby::BlockBody {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(QString elapsedText READ elapsedText NOTIFY elapsedChanged)
    Q_PROPERTY(QString durationText READ durationText NOTIFY stateChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY progressChanged)
    /// The part that was played, from 0 to 1.
    Q_PROPERTY(qreal progress READ progress NOTIFY progressChanged)
    /// How loud the note is, piece by piece, from 0 to 1; while it is recorded, the last pieces.
    Q_PROPERTY(QList<float> loudness READ loudness NOTIFY loudnessChanged)
    Q_PROPERTY(QString rateText READ rateText NOTIFY rateChanged)
    /// Why the last recording came to nothing or ended early; empty for nothing to be said.
    Q_PROPERTY(QString mishap READ mishap NOTIFY stateChanged)
    /// There is a recording before this one, to which the person can go back.
    Q_PROPERTY(bool hasPrevious READ hasPrevious NOTIFY stateChanged)

public:
    enum class State {
        empty,
        recording,
        ready,
        /// The note names a file that is not in the media folder.
        missing,
        /// Nothing in the file can be played.
        broken,
    };
    Q_ENUM(State)

    static constexpr std::chrono::milliseconds kPlayTick{50};

    explicit VoiceNoteBlockContent(QQuickItem *parent = nullptr);

    [[nodiscard]] State state() const;
    [[nodiscard]] QString elapsedText() const;
    [[nodiscard]] QString durationText() const;
    [[nodiscard]] bool isPlaying() const { return m_player && m_player->isPlaying(); }
    [[nodiscard]] double progress() const;
    [[nodiscard]] QList<float> loudness() const;
    [[nodiscard]] QString rateText() const;
    [[nodiscard]] QString mishap() const;
    [[nodiscard]] bool hasPrevious() const;

    Q_INVOKABLE void record();
    Q_INVOKABLE void stop();
    Q_INVOKABLE void restorePrevious();
    Q_INVOKABLE void togglePlay();
    /// To that part of the note, from 0 to 1.
    Q_INVOKABLE void seek(qreal part);
    /// As recorded, half as fast again, twice as fast, and around again.
    Q_INVOKABLE void changeRate();

    [[nodiscard]] bool takesPointerAtRest() const override { return true; }
    [[nodiscard]] QString spokenText() const override;
    Q_INVOKABLE bool activate() override;
    [[nodiscard]] std::vector<MenuEntry> menuEntries() override;

Q_SIGNALS:
    void stateChanged();
    void elapsedChanged();
    void progressChanged();
    void loudnessChanged();
    void rateChanged();

protected:
    void componentComplete() override;

private:
    void loadIfReady();
    [[nodiscard]] bool startPlayback();
    void stopPlaybackOnly();
    void startProgressTicker();
    void tick();

    VoiceRecordingService *m_service;
    std::unique_ptr<AudioPlayer> m_player;
    double m_playProgress = 0;
    double m_readyDuration = 0;
    int m_rate = 0;
    /// The file of which nothing can be played.
    QString m_brokenFile;
    ScheduledCall m_playTicker;
    NotificationCenter::Observation m_closing;
};

} // namespace tallowby
