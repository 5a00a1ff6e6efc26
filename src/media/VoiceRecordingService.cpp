#include "media/VoiceRecordingService.h"

#include "platform/Log.h"
#include "storage/BlockStorage.h"
#include "storage/MediaStorage.h"

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

/// Of what is drawn while a note is recorded.
constexpr qsizetype kMostLevels = 200;
constexpr int kMostFilesInMind = 60;

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
    , m_loudness(kMostFilesInMind) {}

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
    const QString fileName = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QStringLiteral(".m4a");
    const std::optional<QString> folder = MediaStorage::directory();
    auto [recorder, error] = folder ? m_audio.makeRecorder(*folder + u'/' + fileName, m_microphoneId)
                                    : MediaResult<AudioRecorder>{nullptr, QStringLiteral("there is no place for it")};
    if (!recorder) {
        logLine(QString(u"[VoiceRecordingService] Record failed: " + error));
        return;
    }
    recorder->record();
    m_recorder = std::move(recorder);
    m_activeBlockId = block.id();
    m_elapsed = 0;
    m_levels.clear();
    m_activeBlock = &block;
    m_fileName = fileName;
    block.setMediaFileName(fileName);
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
        if (m_levels.size() > kMostLevels) {
            m_levels.removeFirst();
        }
    }
    if (std::exchange(m_elapsed, elapsed) != elapsed) {
        Q_EMIT elapsedChanged();
    }
    const bool isDeleted = m_activeBlock && !m_activeBlock->isLive();
    if (isDeleted || (m_recorder && m_recorder->hasFailed())) {
        stopRecording();
    }
}

void VoiceRecordingService::stopRecording() {
    if (!m_activeBlock) {
        return;
    }
    const double duration = m_recorder ? m_recorder->currentTime() : m_elapsed;
    const QString fileName = m_fileName;
    if (const auto recorder = std::exchange(m_recorder, nullptr)) {
        m_finishing.insert(fileName);
        recorder->stop([service = QPointer(this), fileName] {
            if (service) {
                service->m_finishing.remove(fileName);
                Q_EMIT service->fileFinished(fileName);
            }
        });
    }
    m_ticker.cancel();
    m_activeBlock->setMediaDuration(duration);
    m_activeBlock->setUpdatedAt(Timestamp::from(m_scheduler.now()));
    m_activeBlock->setNeedsSync(true);
    m_storage.save();
    m_activeBlock.clear();
    m_activeBlockId.reset();
    m_elapsed = 0;
    Q_EMIT activeBlockIdChanged();
    Q_EMIT elapsedChanged();
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
