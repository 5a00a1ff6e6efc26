#include "blocks/video/VideoNoteBlockContent.h"

#include "blocks/card/RecordingMenu.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "media/DurationText.h"
#include "media/VideoRecordingService.h"
#include "platform/AppEvents.h"
#include "platform/Log.h"
#include "storage/BlockStorage.h"
#include "storage/MediaStorage.h"

#include <QPointer>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// A record from elsewhere may claim any duration; no film is longer than a day.
constexpr double kMaxDuration = 86'400;

} // namespace

VideoNoteBlockContent::VideoNoteBlockContent(QQuickItem *parent)
    : BlockBody(parent)
    , m_service(VideoRecordingService::shared()) {}

VideoNoteBlockContent::~VideoNoteBlockContent() {
    if (!m_recorded || !m_recorder) {
        return;
    }
    if (!m_isStarting && m_recorder->state() == VideoRecorder::State::recording) {
        keepFilm();
    } else if (m_isStarting || m_recorder->state() == VideoRecorder::State::preparing) {
        giveBack();
    }
}

void VideoNoteBlockContent::componentComplete() {
    BlockBody::componentComplete();
    m_recorded = block();
    connect(block(), &Block::contentChanged, this, &VideoNoteBlockContent::loadIfReady);
    if (m_service) {
        m_recorder = std::make_unique<VideoRecorder>(m_service->video(), m_service->queue());
        connect(m_recorder.get(), &VideoRecorder::stateChanged, this, &VideoNoteBlockContent::handleStateChange);
        connect(m_recorder.get(), &VideoRecorder::previewChanged, this, &VideoNoteBlockContent::phaseChanged);
    }
    m_closing = canvas().notifications().observe(events::flipClosed, [this](const auto &) { cleanup(); });
    loadIfReady();
}

VideoNoteBlockContent::Phase VideoNoteBlockContent::phase() const {
    const VideoRecorder::State state = m_recorder ? m_recorder->state() : VideoRecorder::State::idle;
    if (state == VideoRecorder::State::preparing) {
        return Phase::preparing;
    }
    if (state == VideoRecorder::State::recording) {
        return Phase::recording;
    }
    if (!m_brokenFile.isEmpty()) {
        return Phase::broken;
    }
    // A note that has a film keeps showing it, whatever became of a newer one.
    if (m_player) {
        return Phase::ready;
    }
    if (state == VideoRecorder::State::permissionDenied) {
        return Phase::denied;
    }
    return block()->mediaFileName() ? Phase::missing : Phase::empty;
}

bool VideoNoteBlockContent::isRecording() const {
    const Phase now = phase();
    return now == Phase::preparing || now == Phase::recording;
}

QString VideoNoteBlockContent::mishap() const {
    return isRecording() || phase() == Phase::denied ? QString() : m_mishap;
}

bool VideoNoteBlockContent::hasPrevious() const {
    return m_service && !isRecording() && NoteRecordings::of(*block()).hasPrevious();
}

QString VideoNoteBlockContent::durationText() const {
    const double stored = block()->mediaDuration();
    return formatDuration(phase() == Phase::recording ? m_recordDuration
                          : std::isfinite(stored)     ? std::clamp(stored, 0.0, kMaxDuration)
                                                      : 0);
}

QObject *VideoNoteBlockContent::frames() const {
    switch (phase()) {
    case Phase::recording:
        return m_recorder->preview().get();
    case Phase::ready:
        return m_player->frames().get();
    case Phase::empty:
    case Phase::preparing:
    case Phase::denied:
    case Phase::missing:
    case Phase::broken:
        break;
    }
    return nullptr;
}

QString VideoNoteBlockContent::spokenText() const {
    if (const QString said = mishap(); !said.isEmpty()) {
        return said;
    }
    switch (phase()) {
    case Phase::preparing:
        return tr("starting the camera");
    case Phase::recording:
        return tr("recording");
    case Phase::denied:
        return tr("camera access denied");
    case Phase::ready:
        return durationText();
    case Phase::missing:
        return tr("the recording is not on this device");
    case Phase::broken:
        return tr("the recording cannot be played");
    case Phase::empty:
        break;
    }
    return tr("empty");
}

void VideoNoteBlockContent::startRecording() {
    const std::optional<QString> folder = MediaStorage::directory();
    if (!m_recorder || !folder || m_isStarting || isRecording()) {
        return;
    }
    m_isStarting = true;
    m_ticker.cancel();
    m_recordDuration = 0;
    m_player.reset();
    m_isPlaying = false;
    m_brokenFile.clear();
    m_mishap.clear();
    m_fileName = newRecordingName(QStringLiteral(".mp4"));
    m_before = NoteRecordings::of(*block());
    m_before.replacedBy({m_fileName}).writeTo(*block());
    // Should the program not come to the end of the film, the note still knows its file.
    m_service->storage().save();
    m_recorder->setDevices(m_service->cameraId(), {});
    m_recorder->startRecording(*folder + u'/' + m_fileName);
}

void VideoNoteBlockContent::stopRecording() {
    if (m_recorder) {
        m_recorder->stopRecording();
    }
}

void VideoNoteBlockContent::restorePrevious() {
    const NoteRecordings recordings = NoteRecordings::of(*block());
    if (m_service && !isRecording() && recordings.hasPrevious()) {
        m_mishap.clear();
        recordings.swapped().writeTo(*block());
        handOnRecording(*block(), m_service->scheduler(), m_service->storage());
    }
}

void VideoNoteBlockContent::handleStateChange() {
    m_isStarting = false;
    switch (m_recorder->state()) {
    case VideoRecorder::State::ready:
        m_ticker.cancel();
        keepFilm();
        break;
    case VideoRecorder::State::recording:
        m_recordDuration = 0;
        m_ticker = m_service->scheduler().every(kTick, [this] {
            m_recordDuration += std::chrono::duration<double>(kTick).count();
            Q_EMIT durationChanged();
            if (!block()->isLive()) {
                // No camera stays open for a note in the bin.
                m_recorder->stopSession();
            }
        });
        break;
    case VideoRecorder::State::idle:
        m_ticker.cancel();
        endEarly();
        break;
    case VideoRecorder::State::permissionDenied:
        m_ticker.cancel();
        m_mishap = tr("Camera access denied. Enable in System Settings → Privacy → Camera.");
        giveBack();
        break;
    case VideoRecorder::State::preparing:
        m_ticker.cancel();
        break;
    }
    loadIfReady();
}

void VideoNoteBlockContent::endEarly() {
    const bool isKept = MediaStorage::existingFile(m_fileName).has_value();
    if (const std::optional<MediaFailure> &failure = m_recorder->failure()) {
        m_mishap = RecordingMishap{RecordingMishap::Medium::film, *failure, isKept}.text();
    }
    if (isKept) {
        keepFilm();
    } else {
        giveBack();
    }
}

void VideoNoteBlockContent::keepFilm() {
    // The name as well: the note may have been replaced by another device's meanwhile.
    m_before.replacedBy({m_fileName, m_recordDuration}).writeTo(*m_recorded);
    handOnRecording(*m_recorded, m_service->scheduler(), m_service->storage());
}

void VideoNoteBlockContent::giveBack() {
    if (m_recorded->mediaFileName() == m_fileName) {
        m_before.writeTo(*m_recorded);
        handOnRecording(*m_recorded, m_service->scheduler(), m_service->storage());
    }
}

void VideoNoteBlockContent::loadIfReady() {
    if (m_isStarting) {
        return;
    }
    if (isRecording()) {
        Q_EMIT phaseChanged();
        Q_EMIT durationChanged();
        return;
    }
    const QString name = block()->mediaFileName().value_or(QString());
    const std::optional<QString> path = MediaStorage::existingFile(name);
    if (!path) {
        m_player.reset();
        m_isPlaying = false;
        m_playerFile.clear();
        m_brokenFile.clear();
    } else if (*path != m_playerFile || (!m_player && m_brokenFile != name)) {
        m_brokenFile.clear();
        makePlayer(*path);
        if (block()->mediaDuration() == 0) {
            readLength(name, *path);
        }
    }
    Q_EMIT phaseChanged();
    Q_EMIT durationChanged();
}

void VideoNoteBlockContent::readLength(const QString &fileName, const QString &path) {
    if (!m_service || m_measuredFile == fileName) {
        return;
    }
    m_measuredFile = fileName;
    m_service->video().readLength(path, [body = QPointer(this), fileName](const std::optional<double> &seconds) {
        if (!body) {
            return;
        }
        body->m_measuredFile.clear();
        if (body->isRecording() || body->block()->mediaFileName() != fileName) {
            return;
        }
        if (seconds) {
            body->block()->setMediaDuration(*seconds);
            handOnRecording(*body->block(), body->m_service->scheduler(), body->m_service->storage());
        } else {
            body->m_player.reset();
            body->m_isPlaying = false;
            body->m_brokenFile = fileName;
            Q_EMIT body->phaseChanged();
        }
    });
}

void VideoNoteBlockContent::makePlayer(const QString &path) {
    m_isPlaying = false;
    m_player.reset();
    if (!m_service) {
        return;
    }
    auto [player, failure] = m_service->video().makePlayer(path);
    if (!player) {
        logLine(QString(u"[VideoNote] Playback failed: " + failure.text));
        return;
    }
    m_player = std::move(player);
    m_playerFile = path;
    m_player->onEnd([this](const std::optional<MediaFailure> &ended) { handlePlayerEnd(ended); });
}

void VideoNoteBlockContent::handlePlayerEnd(const std::optional<MediaFailure> &failure) {
    m_isPlaying = false;
    if (failure) {
        logLine(QString(u"[VideoNote] Playback failed: " + failure->text));
        if (m_player->frames()->newest().isNull()) {
            m_brokenFile = block()->mediaFileName().value_or(QString());
        }
    }
    Q_EMIT phaseChanged();
}

void VideoNoteBlockContent::cleanup() {
    if (m_recorder) {
        m_recorder->stopSession();
    }
    if (m_player && m_isPlaying) {
        m_player->pause();
        m_isPlaying = false;
    }
    m_ticker.cancel();
    Q_EMIT phaseChanged();
}

void VideoNoteBlockContent::togglePlay() {
    if (!m_player) {
        return;
    }
    m_mishap.clear();
    m_isPlaying = !m_isPlaying;
    if (m_isPlaying) {
        m_player->playFromStart();
    } else {
        m_player->pause();
    }
    Q_EMIT phaseChanged();
}

bool VideoNoteBlockContent::activate() {
    switch (phase()) {
    case Phase::recording:
        stopRecording();
        return true;
    case Phase::ready:
        togglePlay();
        return true;
    case Phase::preparing:
        return true;
    case Phase::empty:
    case Phase::denied:
    case Phase::missing:
    case Phase::broken:
        startRecording();
        return true;
    }
    return false;
}

std::vector<MenuEntry> VideoNoteBlockContent::menuEntries() {
    if (!m_service || phase() == Phase::recording || phase() == Phase::preparing) {
        return {};
    }
    RecordingMenu menu{.device = tr("Camera"),
                       .symbol = QStringLiteral("video"),
                       .devices = m_service->video().cameras(),
                       .chosenId = m_service->cameraId(),
                       .choose = [service = QPointer(m_service)](const QString &id) {
                           if (service) {
                               service->setCameraId(id);
                           }
                       }};
    if (hasPrevious()) {
        menu.restorePrevious = [body = QPointer(this)] {
            if (body) {
                body->restorePrevious();
            }
        };
    }
    return menu.entries();
}

} // namespace tallowby
