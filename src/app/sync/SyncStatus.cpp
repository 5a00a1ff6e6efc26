#include "app/sync/SyncStatus.h"

#include "platform/theme/Theme.h"
#include "sync/SyncEngine.h"

#include <QClipboard>
#include <QDateTime>
#include <QGuiApplication>
#include <QLocale>

#include <cmath>

namespace tallowby {

namespace {

QDateTime toDateTime(Timestamp time) {
    const double unixSeconds = time.secondsSinceReference + double(Timestamp::kReferenceDate.count());
    return QDateTime::fromMSecsSinceEpoch(std::llround(unixSeconds * 1000));
}

} // namespace

SyncStatus::SyncStatus(Scheduler &scheduler)
    : m_scheduler(scheduler) {
    connect(&Theme::shared(), &Theme::changed, this, &SyncStatus::changed);
}

void SyncStatus::setEngine(SyncEngine *engine) {
    m_engine = engine;
    if (engine) {
        connect(engine, &SyncEngine::syncStateChanged, this, &SyncStatus::changed);
        connect(engine, &SyncEngine::lastSyncTimeChanged, this, &SyncStatus::changed);
        connect(engine, &SyncEngine::pendingChangesChanged, this, &SyncStatus::changed);
    }
    Q_EMIT changed();
}

SyncStatus::Tone SyncStatus::tone() const {
    switch (m_engine ? m_engine->syncState().kind : SyncState::Kind::idle) {
    case SyncState::Kind::error:
        // Whoever has no backend at all need not be told so in red.
        return m_engine->isUnreachable() && !m_engine->lastSyncTime() ? Tone::Quiet : Tone::Bad;
    case SyncState::Kind::syncing:
        return Tone::Busy;
    case SyncState::Kind::connected:
        return Tone::Good;
    case SyncState::Kind::idle:
        break;
    }
    return Tone::Quiet;
}

QColor SyncStatus::color() const {
    const Theme &theme = Theme::shared();
    switch (tone()) {
    case Tone::Bad:
        return theme.danger();
    case Tone::Busy:
        return theme.accent();
    case Tone::Good:
        return theme.success();
    case Tone::Quiet:
        break;
    }
    return theme.inkSoft();
}

QString SyncStatus::summary() const {
    switch (tone()) {
    case Tone::Bad:
        return tr("Not synced");
    case Tone::Busy:
        return tr("Syncing…");
    case Tone::Good:
        return tr("Synced");
    case Tone::Quiet:
        break;
    }
    return m_engine ? tr("Not connected") : tr("Connects when the canvas is first opened");
}

QString SyncStatus::detail() const {
    if (!m_engine) {
        return {};
    }
    QStringList parts;
    if (m_engine->syncState().kind == SyncState::Kind::error) {
        parts << m_engine->syncState().text << tr("your notes are kept on this computer");
    }
    if (const int waiting = m_engine->pendingChanges(); waiting > 0) {
        parts << (waiting == 1 ? tr("1 change waits") : tr("%1 changes wait").arg(waiting));
    }
    if (const auto last = m_engine->lastSyncTime()) {
        const QDateTime time = toDateTime(*last);
        const bool isToday = time.date() == toDateTime(Timestamp::from(m_scheduler.now())).date();
        const QLocale locale;
        parts << tr("last at %1")
                     .arg(isToday ? locale.toString(time.time(), QLocale::ShortFormat)
                                  : locale.toString(time, QLocale::ShortFormat));
    }
    return parts.join(QStringLiteral(" · "));
}

QString SyncStatus::userId() const {
    const auto id = m_engine ? m_engine->userId() : std::nullopt;
    return id ? id->toString(QUuid::WithoutBraces).toUpper() : QString();
}

void SyncStatus::copyUserId() const {
    QGuiApplication::clipboard()->setText(userId());
}

} // namespace tallowby
