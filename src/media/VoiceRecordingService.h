#pragma once

#include "media/NoteRecordings.h"
#include "model/Block.h"
#include "platform/Scheduler.h"
#include "platform/desktop/Audio.h"

#include <QCache>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>

#include <memory>
#include <optional>

namespace tallowby {

class BlockStorage;

/// Records voice notes, one at a time, into the media folder. The block that is recorded names its file from the start
/// and gets its duration at the end. Main thread only.
class VoiceRecordingService : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds kTick{100};

    /// All of them must outlive the service.
    VoiceRecordingService(Audio &audio, BlockStorage &storage, Scheduler &scheduler, QObject *parent = nullptr);
    /// A recording that runs is stopped: what was said is kept.
    ~VoiceRecordingService() override;

    /// The one that the notes on the canvas use; null while there is none.
    [[nodiscard]] static VoiceRecordingService *shared();
    /// It stays the shared one until it ends.
    void share();

    [[nodiscard]] std::optional<QUuid> activeBlockId() const { return m_activeBlockId; }
    /// Seconds.
    [[nodiscard]] double elapsed() const { return m_elapsed; }
    /// How loud it is, from 0 to 1: the newest last, one for each tick.
    [[nodiscard]] const QList<float> &levels() const { return m_levels; }
    [[nodiscard]] bool isRecording(QUuid blockId) const { return m_activeBlockId == blockId; }
    /// Stops a recording that runs, of this block or another, as if the user had.
    void startRecording(Block &block);
    void stopRecording();
    /// Why the last recording of that block came to nothing or ended early, in plain words; empty when it did not.
    [[nodiscard]] QString mishap(QUuid blockId) const { return m_mishaps.value(blockId); }
    void clearMishap(QUuid blockId);
    /// Goes back to the recording before; once more, and the newer one is there again.
    void restorePrevious(Block &block);

    /// Reads the length of a recording whose end was never written down, and writes it down. `unplayable` tells when
    /// nothing in it can be played.
    void readLength(Block &block);

    /// The file was stopped but has not come to its end yet: it cannot be played.
    [[nodiscard]] bool isFinishing(const QString &fileName) const { return m_finishing.contains(fileName); }
    /// Where a note's file is; none when the name is no bare name, or when there is no such file.
    [[nodiscard]] static std::optional<QString> existingFile(const Block &block);
    /// How loud the file is, piece by piece; nothing while it is being read, after which `loudnessRead` tells.
    [[nodiscard]] QList<float> loudness(const QString &fileName);

    [[nodiscard]] QList<MediaDevice> microphones() { return m_audio.microphones(); }
    [[nodiscard]] const QString &microphoneId() const { return m_microphoneId; }
    /// Empty for the system's own choice.
    void setMicrophoneId(const QString &id) { m_microphoneId = id; }

    [[nodiscard]] Audio &audio() { return m_audio; }
    [[nodiscard]] Scheduler &scheduler() { return m_scheduler; }

Q_SIGNALS:
    void activeBlockIdChanged();
    void elapsedChanged();
    void fileFinished(const QString &fileName);
    void mishapChanged(QUuid blockId);
    void unplayable(const QString &fileName);
    void loudnessRead(const QString &fileName);

private:
    void tick();
    void finish(const QString &fileName, const QPointer<Block> &block, const NoteRecordings &before,
                const std::optional<MediaFailure> &failure);
    void setMishap(QUuid blockId, const RecordingMishap &mishap);

    Audio &m_audio;
    BlockStorage &m_storage;
    Scheduler &m_scheduler;
    std::optional<QUuid> m_activeBlockId;
    double m_elapsed = 0;
    QList<float> m_levels;
    /// The note may go while it is recorded.
    QPointer<Block> m_activeBlock;
    QString m_fileName;
    /// What the note said of its recordings before this one.
    NoteRecordings m_before;
    std::unique_ptr<AudioRecorder> m_recorder;
    ScheduledCall m_ticker;
    QString m_microphoneId;
    QSet<QString> m_finishing;
    QHash<QUuid, QString> m_mishaps;
    QSet<QString> m_reading;
    QSet<QString> m_measuring;
    QCache<QString, QList<float>> m_loudness;
};

} // namespace tallowby
