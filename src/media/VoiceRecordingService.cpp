#include "media/VoiceRecordingService.h"

#include "platform/Log.h"
#include "storage/BlockStorage.h"
#include "storage/MediaStorage.h"

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

/// As many as are drawn while a note is recorded.
constexpr qsizetype kMaxLevels = 200;
constexpr int kMaxCachedFiles = 60;

MediaFailure noFolderFailure() {
    return {QStringLiteral("there is no place for it"), MediaFailure::Kind::fileFailed};
}

QPointer<VoiceRecordingService> &sharedService() {
    static QPointer<VoiceRecordingService> service;
    return service;
}

} // namespace

VoiceRecordingService::VoiceRecordingService(Audio &audio, BlockStorage &storage, Scheduler &scheduler, QObject *parent)
    : QObject(parent)
    , m_audio(audio)
    , m_storage(storage)
    , m_scheduler(scheduler)
    , m_loudness(kMaxCachedFiles) {}

VoiceRecordingService::~VoiceRecordingService() {
    stopRecording();
}

VoiceRecordingService *VoiceRecordingService::shared() {
    return sharedService();
}

void VoiceRecordingService::share() {
    sharedService() = this;
}

void VoiceRecordingService::startRecording(Block &block) {
    if (m_activeBlockId) {
        stopRecording();
    }
    const QString fileName = newRecordingName(QStringLiteral(".m4a"));
    const std::optional<QString> folder = MediaStorage::directory();
    auto [recorder, failure] = folder ? m_audio.makeRecorder(*folder + u'/' + fileName, m_microphoneId)
                                      : MediaResult<AudioRecorder>{nullptr, noFolderFailure()};
    if (!recorder) {
        logLine(QString(u"[VoiceRecordingService] Record failed: " + failure.text));
        setMishap(block.id(), {RecordingMishap::Medium::voice, failure});
        return;
    }
    clearMishap(block.id());
    recorder->record();
    m_recorder = std::move(recorder);
    m_activeBlockId = block.id();
    m_elapsed = 0;
    m_levels.clear();
    m_activeBlock = &block;
    m_fileName = fileName;
    m_before = NoteRecordings::of(block);
    m_before.replacedBy({fileName}).writeTo(block);
    // Should the program not come to the end of the recording, the note still knows its file.
    m_storage.save();
    m_ticker = m_scheduler.every(kTick, [this] { tick(); });
    Q_EMIT activeBlockIdChanged();
    Q_EMIT elapsedChanged();
}

void VoiceRecordingService::tick() {
    const double elapsed = m_recorder ? m_recorder->currentTime() : 0;
    if (m_recorder) {
        m_levels << float(m_recorder->level());
        if (m_levels.size() > kMaxLevels) {
            m_levels.removeFirst();
        }
    }
    if (std::exchange(m_elapsed, elapsed) != elapsed) {
        Q_EMIT elapsedChanged();
    }
    const bool isDeleted = m_activeBlock && !m_activeBlock->isLive();
    if (isDeleted || (m_recorder && m_recorder->failure())) {
        stopRecording();
    }
}

void VoiceRecordingService::stopRecording() {
    if (!m_activeBlock) {
        return;
    }
    const double duration = m_recorder ? m_recorder->currentTime() : m_elapsed;
    if (const auto recorder = std::exchange(m_recorder, nullptr)) {
        m_finishing.insert(m_fileName);
        recorder->stop([service = QPointer(this), fileName = m_fileName, block = m_activeBlock,
                        before = m_before](const std::optional<MediaFailure> &failure) {
            if (service) {
                service->finish(fileName, block, before, failure);
            }
        });
    }
    m_ticker.cancel();
    // The name as well: the note may have been replaced by another device's meanwhile.
    m_before.replacedBy({m_fileName, duration}).writeTo(*m_activeBlock);
    handOnRecording(*m_activeBlock, m_scheduler, m_storage);
    m_activeBlock.clear();
    m_activeBlockId.reset();
    m_elapsed = 0;
    Q_EMIT activeBlockIdChanged();
    Q_EMIT elapsedChanged();
}

void VoiceRecordingService::finish(const QString &fileName, const QPointer<Block> &block, const NoteRecordings &before,
                                   const std::optional<MediaFailure> &failure) {
    m_finishing.remove(fileName);
    if (failure) {
        logLine(QString(u"[VoiceRecordingService] Record failed: " + failure->text));
    }
    if (failure && block) {
        const bool isKept = MediaStorage::existingFile(fileName).has_value();
        if (!isKept && block->mediaFileName() == fileName) {
            before.writeTo(*block);
            handOnRecording(*block, m_scheduler, m_storage);
        }
        setMishap(block->id(), {RecordingMishap::Medium::voice, *failure, isKept});
    }
    Q_EMIT fileFinished(fileName);
}

void VoiceRecordingService::setMishap(QUuid blockId, const RecordingMishap &mishap) {
    m_mishaps.insert(blockId, mishap.text());
    Q_EMIT mishapChanged(blockId);
}

void VoiceRecordingService::clearMishap(QUuid blockId) {
    if (m_mishaps.remove(blockId)) {
        Q_EMIT mishapChanged(blockId);
    }
}

void VoiceRecordingService::restorePrevious(Block &block) {
    const NoteRecordings recordings = NoteRecordings::of(block);
    if (recordings.hasPrevious() && !isRecording(block.id())) {
        clearMishap(block.id());
        recordings.swapped().writeTo(block);
        handOnRecording(block, m_scheduler, m_storage);
    }
}

void VoiceRecordingService::readLength(Block &block) {
    const QString fileName = block.mediaFileName().value_or(QString());
    const std::optional<QString> path = MediaStorage::existingFile(fileName);
    if (!path || isFinishing(fileName) || m_measuring.contains(fileName)) {
        return;
    }
    m_measuring.insert(fileName);
    m_audio.readLength(
        *path, [service = QPointer(this), block = QPointer(&block), fileName](const std::optional<double> &seconds) {
            if (!service) {
                return;
            }
            service->m_measuring.remove(fileName);
            if (!seconds) {
                Q_EMIT service->unplayable(fileName);
            } else if (block && block->mediaFileName() == fileName) {
                block->setMediaDuration(*seconds);
                handOnRecording(*block, service->m_scheduler, service->m_storage);
            }
        });
}

std::optional<QString> VoiceRecordingService::existingFile(const Block &block) {
    const std::optional<QString> name = block.mediaFileName();
    return name ? MediaStorage::existingFile(*name) : std::nullopt;
}

QList<float> VoiceRecordingService::loudness(const QString &fileName) {
    if (const QList<float> *known = m_loudness.object(fileName)) {
        return *known;
    }
    const std::optional<QString> path = MediaStorage::existingFile(fileName);
    if (path && !isFinishing(fileName) && !m_reading.contains(fileName)) {
        m_reading.insert(fileName);
        m_audio.readLoudness(*path, [service = QPointer(this), fileName](const QList<float> &pieces) {
            if (service) {
                service->m_reading.remove(fileName);
                service->m_loudness.insert(fileName, new QList<float>(pieces));
                Q_EMIT service->loudnessRead(fileName);
            }
        });
    }
    return {};
}

} // namespace tallowby
