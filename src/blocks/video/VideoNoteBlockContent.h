#pragma once

#include "canvas/container/BlockBody.h"
#include "media/NoteRecordings.h"
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
    /// Why the last recording came to nothing or ended early; empty for nothing to be said.
    Q_PROPERTY(QString mishap READ mishap NOTIFY phaseChanged)
    /// There is a film before this one, to which the person can go back.
    Q_PROPERTY(bool hasPrevious READ hasPrevious NOTIFY phaseChanged)

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
        /// Nothing in the file can be played.
        broken,
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
    [[nodiscard]] QString mishap() const;
    [[nodiscard]] bool hasPrevious() const;

    Q_INVOKABLE void startRecording();
    Q_INVOKABLE void stopRecording();
    /// Goes back to the film before; once more, and the newer one is there again.
    Q_INVOKABLE void restorePrevious();
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
    [[nodiscard]] bool isRecording() const;
    /// The film is the note's from now on.
    void keepFilm();
    /// The film came to nothing: the note has what it had before.
    void giveBack();
    void endEarly();
    void loadIfReady();
    void readLength(const QString &fileName, const QString &path);
    void handlePlayerEnd(const std::optional<MediaFailure> &failure);
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
    /// From the request until the recorder answers.
    bool m_isStarting = false;
    QString m_mishap;
    /// The file of which nothing can be played.
    QString m_brokenFile;
    /// The file that is being measured.
    QString m_measuredFile;
    /// What is being filmed, and what the note said of its films before.
    QString m_fileName;
    NoteRecordings m_before;
    /// Seconds, counted in ticks.
    double m_recordDuration = 0;
    ScheduledCall m_ticker;
    NotificationCenter::Observation m_closing;
};

} // namespace tallowby
