#pragma once

#include "canvas/container/BlockBody.h"
#include "media/VideoRecorder.h"
#include "platform/NotificationCenter.h"
#include "platform/Scheduler.h"

#include <memory>

namespace tallowby {

class VideoRecordingService;

/// The body of a video note: records a film with the camera, and plays it.
class VideoNoteBlockContent : public tallowby::BlockBody {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Phase phase READ phase NOTIFY phaseChanged)
    /// Of the recording while there is one, else of the film.
    Q_PROPERTY(QString durationText READ durationText NOTIFY durationChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY phaseChanged)
    /// The pictures to be seen: the camera's while recording, else the film's. Null for none.
    Q_PROPERTY(QObject *frames READ frames NOTIFY phaseChanged)
    /// Whether a recording has pictures.
    Q_PROPERTY(bool hasCamera READ hasCamera NOTIFY phaseChanged)

public:
    /// What the card shows.
    enum class Phase {
        empty,
        preparing,
        recording,
        denied,
        ready,
        /// The note names a file that is not in the media folder.
        missing,
    };
    Q_ENUM(Phase)

    static constexpr std::chrono::milliseconds kTick{100};

    explicit VideoNoteBlockContent(QQuickItem *parent = nullptr);
    ~VideoNoteBlockContent() override;

    [[nodiscard]] Phase phase() const;
    [[nodiscard]] QString durationText() const;
    [[nodiscard]] bool isPlaying() const { return m_isPlaying; }
    [[nodiscard]] QObject *frames() const;
    [[nodiscard]] bool hasCamera() const { return m_recorder && m_recorder->hasCamera(); }

    Q_INVOKABLE void startRecording();
    Q_INVOKABLE void stopRecording();
    Q_INVOKABLE void togglePlay();

    [[nodiscard]] bool takesPointerAtRest() const override { return true; }
    [[nodiscard]] QString spokenText() const override;
    Q_INVOKABLE bool activate() override;
    [[nodiscard]] std::vector<MenuEntry> menuEntries() override;

Q_SIGNALS:
    void phaseChanged();
    void durationChanged();

protected:
    void componentComplete() override;

private:
    void handleStateChange();
    void keepDuration();
    void loadIfReady();
    void makePlayer(const QString &path);
    void cleanup();

    VideoRecordingService *m_service;
    /// Whether it is still there when this body goes.
    QPointer<Block> m_recorded;
    std::unique_ptr<VideoRecorder> m_recorder;
    std::unique_ptr<MoviePlayer> m_player;
    /// Of the file that the player has.
    QString m_playerFile;
    bool m_isPlaying = false;
    /// The last recording came to nothing.
    bool m_hasFailed = false;
    /// Seconds, counted in ticks.
    double m_recordDuration = 0;
    ScheduledCall m_ticker;
    NotificationCenter::Observation m_closing;
};

} // namespace tallowby
