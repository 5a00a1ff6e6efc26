#include "feedback/FeedbackVoiceRecorder.h"

#include "media/DurationText.h"
#include "media/NoteRecordings.h"
#include "platform/Log.h"
#include "storage/MediaStorage.h"

#include <QFile>
#include <QPointer>

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
    stopRecording();
    const QString name = newRecordingName(QStringLiteral("-feedback.m4a"));
    const std::optional<QString> folder = MediaStorage::directory();
    auto [recorder, failure] =
        folder ? m_audio.makeRecorder(*folder + u'/' + name, {})
               : MediaResult<AudioRecorder>{
                     nullptr, {QStringLiteral("there is no place for it"), MediaFailure::Kind::fileFailed}};
    if (!recorder) {
        logLine(QString(u"[FeedbackVoiceRecorder] Record failed: " + failure.text));
        m_mishap = RecordingMishap{RecordingMishap::Medium::voice, failure}.text();
        Q_EMIT changed();
        return;
    }
    m_mishap.clear();
    m_player.reset();
    if (hasRecording() && !m_isFinishing) {
        m_fileBefore = m_recordedFile;
        m_durationBefore = m_duration;
    } else if (m_recordedFile) {
        QFile::remove(*m_recordedFile);
    }
    m_isFinishing = false;
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
        if (m_recorder->failure()) {
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
        recorder->stop([self = QPointer(this), file = *m_recordedFile](const std::optional<MediaFailure> &failure) {
            if (self && self->m_recordedFile == file) {
                self->finish(file, failure);
            }
        });
        Q_EMIT changed();
    }
}

void FeedbackVoiceRecorder::finish(const QString &file, const std::optional<MediaFailure> &failure) {
    m_isFinishing = false;
    const bool isKept = QFile::exists(file);
    if (failure) {
        logLine(QString(u"[FeedbackVoiceRecorder] Record failed: " + failure->text));
        m_mishap = RecordingMishap{RecordingMishap::Medium::voice, *failure, isKept}.text();
    }
    const std::optional<QString> before = std::exchange(m_fileBefore, std::nullopt);
    if (!isKept) {
        m_recordedFile = before;
        m_duration = m_durationBefore;
    } else if (before) {
        QFile::remove(*before);
    }
    Q_EMIT changed();
}

void FeedbackVoiceRecorder::togglePlay() {
    if (isPlaying()) {
        m_player->pause();
    } else if (const std::optional<QString> file = recordedFile()) {
        if (!m_player) {
            auto [player, failure] = m_audio.makePlayer(*file);
            if (!player) {
                logLine(QString(u"[FeedbackVoiceRecorder] Playback failed: " + failure.text));
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
    for (const std::optional<QString> &file : {m_recordedFile, m_fileBefore}) {
        if (file) {
            QFile::remove(*file);
        }
    }
    forget();
}

void FeedbackVoiceRecorder::forget() {
    m_player.reset();
    m_ticker.cancel();
    m_recordedFile.reset();
    m_fileBefore.reset();
    m_mishap.clear();
    m_isFinishing = false;
    m_duration = 0;
    Q_EMIT changed();
}

} // namespace tallowby
