#include "blocks/voice/VoiceNoteBlockContent.h"

#include "blocks/card/RecordingMenu.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "media/DurationText.h"
#include "media/NoteRecordings.h"
#include "media/VoiceRecordingService.h"
#include "platform/AppEvents.h"
#include "platform/Log.h"

#include <QPointer>

#include <algorithm>
#include <array>
#include <cmath>

namespace tallowby {

namespace {

struct Rate {
    double factor;
    const char *text;
};
constexpr std::array kRates{Rate{1, "1×"}, Rate{1.5, "1.5×"}, Rate{2, "2×"}};
/// A record from elsewhere may claim any duration; no recording is longer than a day.
constexpr double kLongest = 86'400;

double bounded(double seconds) {
    return std::isfinite(seconds) ? std::clamp(seconds, 0.0, kLongest) : 0;
}

} // namespace

VoiceNoteBlockContent::VoiceNoteBlockContent(QQuickItem *parent)
    : BlockBody(parent)
    , m_service(VoiceRecordingService::shared()) {}

void VoiceNoteBlockContent::componentComplete() {
    BlockBody::componentComplete();
    connect(block(), &Block::contentChanged, this, [this] {
        stopPlaybackOnly();
        loadIfReady();
    });
    if (m_service) {
        m_service->audio().prepare();
        connect(m_service, &VoiceRecordingService::activeBlockIdChanged, this, [this] {
            loadIfReady();
            Q_EMIT loudnessChanged();
        });
        connect(m_service, &VoiceRecordingService::elapsedChanged, this, [this] {
            if (state() == State::recording) {
                Q_EMIT elapsedChanged();
                Q_EMIT loudnessChanged();
            }
        });
        connect(m_service, &VoiceRecordingService::fileFinished, this, [this](const QString &fileName) {
            if (fileName == block()->mediaFileName()) {
                loadIfReady();
            }
        });
        connect(m_service, &VoiceRecordingService::mishapChanged, this, [this](QUuid blockId) {
            if (blockId == block()->id()) {
                Q_EMIT stateChanged();
            }
        });
        connect(m_service, &VoiceRecordingService::unplayable, this, [this](const QString &fileName) {
            if (fileName == block()->mediaFileName()) {
                m_brokenFile = fileName;
                loadIfReady();
            }
        });
        connect(m_service, &VoiceRecordingService::loudnessRead, this, [this](const QString &fileName) {
            if (fileName == block()->mediaFileName()) {
                Q_EMIT loudnessChanged();
            }
        });
    }
    m_closing = canvas().notifications().observe(events::flipClosed, [this](const auto &) { stopPlaybackOnly(); });
    loadIfReady();
}

VoiceNoteBlockContent::State VoiceNoteBlockContent::state() const {
    if (m_service && m_service->isRecording(block()->id())) {
        return State::recording;
    }
    const std::optional<QString> name = block()->mediaFileName();
    if (!name) {
        return State::empty;
    }
    if (!VoiceRecordingService::existingFile(*block())) {
        return State::missing;
    }
    return *name == m_brokenFile ? State::broken : State::ready;
}

QString VoiceNoteBlockContent::elapsedText() const {
    return formatDuration(m_service ? m_service->elapsed() : 0);
}

QString VoiceNoteBlockContent::durationText() const {
    return formatDuration(m_readyDuration);
}

double VoiceNoteBlockContent::progress() const {
    return m_readyDuration > 0 ? std::min(m_playProgress / m_readyDuration, 1.0) : 0;
}

QList<float> VoiceNoteBlockContent::loudness() const {
    switch (state()) {
    case State::recording:
        return m_service->levels();
    case State::ready:
        return m_service ? m_service->loudness(*block()->mediaFileName()) : QList<float>();
    case State::empty:
    case State::missing:
    case State::broken:
        break;
    }
    return {};
}

QString VoiceNoteBlockContent::rateText() const {
    return QString::fromUtf8(kRates[std::size_t(m_rate)].text);
}

QString VoiceNoteBlockContent::mishap() const {
    return m_service && state() != State::recording ? m_service->mishap(block()->id()) : QString();
}

bool VoiceNoteBlockContent::hasPrevious() const {
    return m_service && state() != State::recording && NoteRecordings::of(*block()).hasPrevious();
}

QString VoiceNoteBlockContent::spokenText() const {
    if (const QString said = mishap(); !said.isEmpty()) {
        return said;
    }
    switch (state()) {
    case State::recording:
        return tr("recording");
    case State::ready:
        return durationText();
    case State::missing:
        return tr("the recording is not on this device");
    case State::broken:
        return tr("the recording cannot be played");
    case State::empty:
        break;
    }
    return tr("empty");
}

void VoiceNoteBlockContent::loadIfReady() {
    m_readyDuration = state() == State::ready ? bounded(block()->mediaDuration()) : 0;
    if (state() == State::ready && m_readyDuration == 0 && m_service) {
        m_service->readLength(*block());
    }
    Q_EMIT stateChanged();
    Q_EMIT loudnessChanged();
}

void VoiceNoteBlockContent::record() {
    if (m_service) {
        stopPlaybackOnly();
        m_service->startRecording(*block());
    }
}

void VoiceNoteBlockContent::stop() {
    if (m_service) {
        m_service->stopRecording();
    }
}

void VoiceNoteBlockContent::restorePrevious() {
    if (m_service) {
        m_service->restorePrevious(*block());
    }
}

void VoiceNoteBlockContent::togglePlay() {
    if (m_service) {
        m_service->clearMishap(block()->id());
    }
    if (!m_player) {
        static_cast<void>(startPlayback());
        return;
    }
    if (m_player->isPlaying()) {
        m_player->pause();
        m_playTicker.cancel();
    } else {
        m_player->play();
        startProgressTicker();
    }
    Q_EMIT progressChanged();
}

bool VoiceNoteBlockContent::startPlayback() {
    const std::optional<QString> name = block()->mediaFileName();
    if (!name || !m_service || m_service->isFinishing(*name)) {
        return false;
    }
    const std::optional<QString> path = VoiceRecordingService::existingFile(*block());
    auto [player, failure] = path ? m_service->audio().makePlayer(*path)
                                  : MediaResult<AudioPlayer>{nullptr, {QStringLiteral("no such file")}};
    if (!player) {
        logLine(QString(u"[VoiceNote] Playback failed: " + failure.text));
        Q_EMIT stateChanged();
        return false;
    }
    player->setRate(kRates[std::size_t(m_rate)].factor);
    player->play();
    m_player = std::move(player);
    m_readyDuration = m_player->duration();
    startProgressTicker();
    Q_EMIT stateChanged();
    Q_EMIT progressChanged();
    return true;
}

void VoiceNoteBlockContent::startProgressTicker() {
    m_playTicker = m_service->scheduler().every(kPlayTick, [this] { tick(); });
}

void VoiceNoteBlockContent::tick() {
    m_playProgress = m_player ? m_player->currentTime() : 0;
    if (m_player && !m_player->isPlaying()) {
        m_playProgress = 0;
        m_playTicker.cancel();
    }
    Q_EMIT progressChanged();
}

void VoiceNoteBlockContent::stopPlaybackOnly() {
    m_playTicker.cancel();
    if (m_player) {
        m_player.reset();
        m_playProgress = 0;
        Q_EMIT progressChanged();
    }
}

void VoiceNoteBlockContent::seek(qreal part) {
    if (!m_player && !startPlayback()) {
        return;
    }
    m_playProgress = std::clamp(part, 0.0, 1.0) * m_player->duration();
    m_player->setCurrentTime(m_playProgress);
    Q_EMIT progressChanged();
}

void VoiceNoteBlockContent::changeRate() {
    m_rate = (m_rate + 1) % int(kRates.size());
    if (m_player) {
        m_player->setRate(kRates[std::size_t(m_rate)].factor);
    }
    Q_EMIT rateChanged();
}

bool VoiceNoteBlockContent::activate() {
    switch (state()) {
    case State::recording:
        stop();
        return true;
    case State::ready:
        togglePlay();
        return true;
    case State::empty:
    case State::missing:
    case State::broken:
        record();
        return true;
    }
    return false;
}

std::vector<MenuEntry> VoiceNoteBlockContent::menuEntries() {
    if (!m_service || state() == State::recording) {
        return {};
    }
    RecordingMenu menu{.device = tr("Microphone"),
                       .symbol = QStringLiteral("mic"),
                       .devices = m_service->microphones(),
                       .chosenId = m_service->microphoneId(),
                       .choose = [service = QPointer(m_service)](const QString &id) {
                           if (service) {
                               service->setMicrophoneId(id);
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
