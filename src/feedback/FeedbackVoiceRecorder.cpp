#include "feedback/FeedbackVoiceRecorder.h"

#include "media/DurationText.h"
#include "platform/Log.h"
#include "storage/MediaStorage.h"

#include <QFile>
#include <QPointer>
#include <QUuid>

#include <utility>

namespace tallowby {

FeedbackVoiceRecorder::FeedbackVoiceRecorder(Audio &audio, Scheduler &scheduler, QObject *parent)
    : QObject(parent)
    , m_audio(audio)
    , m_scheduler(scheduler) {}

FeedbackVoiceRecorder::~FeedbackVoiceRecorder() = default;

QString FeedbackVoiceRecorder::elapsedText() const {
    return formatDuration(m_elapsed);
}

QString FeedbackVoiceRecorder::durationText() const {
    return formatDuration(m_duration);
}

std::optional<QString> FeedbackVoiceRecorder::recordedFile() const {
    return hasRecording() && !m_isFinishing ? m_recordedFile : std::nullopt;
}

void FeedbackVoiceRecorder::startRecording() {
    discard();
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QStringLiteral("-feedback.m4a");
    const std::optional<QString> folder = MediaStorage::directory();
    auto [recorder, error] = folder ? m_audio.makeRecorder(*folder + u'/' + name, {})
                                    : MediaResult<AudioRecorder>{nullptr, QStringLiteral("there is no place for it")};
    if (!recorder) {
        logLine(QString(u"[FeedbackVoiceRecorder] Record failed: " + error));
        return;
    }
    recorder->record();
    m_recorder = std::move(recorder);
    m_recordedFile = *folder + u'/' + name;
    m_elapsed = 0;
    m_ticker = m_scheduler.every(kTick, [this] { tick(); });
    Q_EMIT changed();
}

void FeedbackVoiceRecorder::tick() {
    if (m_recorder) {
        m_elapsed = m_recorder->currentTime();
        m_level = m_recorder->level();
        if (m_recorder->hasFailed()) {
            stopRecording();
        }
    } else if (!isPlaying()) {
        m_ticker.cancel();
    }
    Q_EMIT changed();
}

void FeedbackVoiceRecorder::stopRecording() {
    if (const auto recorder = std::exchange(m_recorder, nullptr)) {
        m_duration = recorder->currentTime();
        m_level = 0;
        m_ticker.cancel();
        m_isFinishing = true;
        recorder->stop([self = QPointer(this), file = m_recordedFile] {
            if (self && self->m_recordedFile == file) {
                self->m_isFinishing = false;
                Q_EMIT self->changed();
            }
        });
        Q_EMIT changed();
    }
}

void FeedbackVoiceRecorder::togglePlay() {
    if (isPlaying()) {
        m_player->pause();
    } else if (const std::optional<QString> file = recordedFile()) {
        if (!m_player) {
            auto [player, error] = m_audio.makePlayer(*file);
            if (!player) {
                logLine(QString(u"[FeedbackVoiceRecorder] Playback failed: " + error));
                return;
            }
            m_player = std::move(player);
        }
        m_player->play();
        m_ticker = m_scheduler.every(kTick, [this] { tick(); });
    }
    Q_EMIT changed();
}

void FeedbackVoiceRecorder::discard() {
    stopRecording();
    if (m_recordedFile) {
        QFile::remove(*m_recordedFile);
    }
    forget();
}

void FeedbackVoiceRecorder::forget() {
    m_player.reset();
    m_ticker.cancel();
    m_recordedFile.reset();
    m_isFinishing = false;
    m_duration = 0;
    Q_EMIT changed();
}

} // namespace tallowby
