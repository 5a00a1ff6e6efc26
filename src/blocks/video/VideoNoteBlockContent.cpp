#include "blocks/video/VideoNoteBlockContent.h"

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
constexpr double kLongest = 86'400;

} // namespace

VideoNoteBlockContent::VideoNoteBlockContent(QQuickItem *parent)
    : BlockBody(parent)
    , m_service(VideoRecordingService::shared()) {}

VideoNoteBlockContent::~VideoNoteBlockContent() {
    if (m_recorded && m_recorder && m_recorder->state() == VideoRecorder::State::recording) {
        keepDuration();
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
    if (state == VideoRecorder::State::permissionDenied) {
        return Phase::denied;
    }
    if (m_player) {
        return Phase::ready;
    }
    return block()->mediaFileName() && !m_hasFailed ? Phase::missing : Phase::empty;
}

QString VideoNoteBlockContent::durationText() const {
    const double stored = block()->mediaDuration();
    return formatDuration(phase() == Phase::recording ? m_recordDuration
                          : std::isfinite(stored)     ? std::clamp(stored, 0.0, kLongest)
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
        break;
    }
    return nullptr;
}

QString VideoNoteBlockContent::spokenText() const {
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
    case Phase::empty:
        break;
    }
    return tr("empty");
}

void VideoNoteBlockContent::startRecording() {
    const std::optional<QString> folder = MediaStorage::directory();
    if (!m_recorder || !folder) {
        return;
    }
    m_ticker.cancel();
    m_recordDuration = 0;
    m_player.reset();
    m_isPlaying = false;
    const QString fileName = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QStringLiteral(".mp4");
    block()->setMediaFileName(fileName);
    m_recorder->setDevices(m_service->cameraId(), {});
    m_recorder->startRecording(*folder + u'/' + fileName);
}

void VideoNoteBlockContent::stopRecording() {
    if (m_recorder) {
        m_recorder->stopRecording();
    }
}

void VideoNoteBlockContent::handleStateChange() {
    switch (m_recorder->state()) {
    case VideoRecorder::State::ready:
        m_ticker.cancel();
        makePlayer(m_recorder->url());
        keepDuration();
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
        m_hasFailed = true;
        break;
    case VideoRecorder::State::permissionDenied:
    case VideoRecorder::State::preparing:
        m_ticker.cancel();
        m_hasFailed = false;
        break;
    }
    Q_EMIT phaseChanged();
    Q_EMIT durationChanged();
}

void VideoNoteBlockContent::keepDuration() {
    block()->setMediaDuration(m_recordDuration);
    block()->setUpdatedAt(Timestamp::from(m_service->scheduler().now()));
    block()->setNeedsSync(true);
    m_service->storage().save();
}

void VideoNoteBlockContent::loadIfReady() {
    const VideoRecorder::State state = m_recorder ? m_recorder->state() : VideoRecorder::State::idle;
    if (state == VideoRecorder::State::preparing || state == VideoRecorder::State::recording) {
        return;
    }
    const std::optional<QString> name = block()->mediaFileName();
    const std::optional<QString> path = name ? MediaStorage::existingFile(*name) : std::nullopt;
    if (!path) {
        m_player.reset();
        m_isPlaying = false;
        m_playerFile.clear();
    } else if (*path != m_playerFile || !m_player) {
        makePlayer(*path);
    }
    Q_EMIT phaseChanged();
    Q_EMIT durationChanged();
}

void VideoNoteBlockContent::makePlayer(const QString &path) {
    m_isPlaying = false;
    m_player.reset();
    if (!m_service) {
        return;
    }
    auto [player, error] = m_service->video().makePlayer(path);
    if (!player) {
        logLine(QString(u"[VideoNote] Playback failed: " + error));
        return;
    }
    m_player = std::move(player);
    m_playerFile = path;
    m_player->onEnd([this] {
        m_isPlaying = false;
        Q_EMIT phaseChanged();
    });
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
        startRecording();
        return true;
    }
    return false;
}

std::vector<MenuEntry> VideoNoteBlockContent::menuEntries() {
    if (!m_service || phase() == Phase::recording || phase() == Phase::preparing) {
        return {};
    }
    const auto choose = [this](const QString &text, const QString &id) {
        return MenuEntry{.text = text,
                         .symbol = m_service->cameraId() == id ? QStringLiteral("checkmark") : QString(),
                         .action = [service = QPointer(m_service), id] {
                             if (service) {
                                 service->setCameraId(id);
                             }
                         }};
    };
    std::vector<MenuEntry> cameras{choose(tr("Chosen by the system"), {})};
    for (const MediaDevice &camera : m_service->video().cameras()) {
        cameras.push_back(choose(camera.name, camera.id));
    }
    return {{.text = tr("Camera"), .symbol = QStringLiteral("video"), .children = std::move(cameras)}};
}

} // namespace tallowby
