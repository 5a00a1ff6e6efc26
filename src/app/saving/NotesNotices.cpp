#include "app/saving/NotesNotices.h"

#include "app/saving/NoticeWindowController.h"
#include "platform/Log.h"
#include "storage/BlockStorage.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QQuickWindow>
#include <QUrl>

#include <utility>

namespace tallowby {

namespace {

constexpr std::chrono::seconds kGraceAtStart{2};

QString folderOf(const BlockStorage &storage) {
    return QFileInfo(storage.filePath().value_or(QString())).absolutePath();
}

} // namespace

NotesNotices::NotesNotices(Scheduler &scheduler, std::function<WindowServices()> windowServices,
                           std::function<bool()> isDesktopSeen)
    : m_scheduler(scheduler)
    , m_windowServices(std::move(windowServices))
    , m_isDesktopSeen(std::move(isDesktopSeen)) {}

NotesNotices::~NotesNotices() = default;

void NotesNotices::showInUse(DataFolderLock &lock, std::function<void()> ready) {
    m_ready = std::move(ready);
    const DataFolderLock::Holder holder = lock.holder();
    logLine(u"[AppDelegate] ❌ Another Tallowby has the notes open: process %1 on %2"_qs.arg(holder.process)
                .arg(holder.computer));
    std::vector<NoticeChoice> choices{{tr("Close"), [this] { m_inUse->window()->close(); }}};
    if (holder.isElsewhere) {
        choices.push_back({tr("Open Here"), [this, &lock] { handleInUse(lock.takeFromElsewhere()); }});
    }
    choices.push_back({tr("Try Again"), [this, &lock] { handleInUse(lock.take()); }});
    m_inUse = std::make_unique<NoticeWindowController>(
        m_windowServices(), tr("Your notes are open in another Tallowby"), std::move(choices));
    m_inUse->setDetails(
        holder.isElsewhere
            ? tr("It runs on %1. Quit it there, then try again. If that computer is off, the notes can be opened here.")
                  .arg(holder.computer)
            : tr("It runs in another session on this computer, as process %1. Quit it there, then try again.")
                  .arg(holder.process));
    m_inUse->show();
    if (!m_inUse->window()) {
        m_call = m_scheduler.after(Scheduler::Duration::zero(), [] { QCoreApplication::exit(); });
        return;
    }
    connect(m_inUse->window(), &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible && m_ready) {
            QCoreApplication::exit();
        }
    });
}

void NotesNotices::handleInUse(DataFolderLock::Outcome outcome) {
    if (outcome == DataFolderLock::Outcome::heldByOther) {
        return;
    }
    const auto ready = std::exchange(m_ready, nullptr);
    m_inUse->window()->close();
    ready();
}

void NotesNotices::follow(BlockStorage &storage) {
    m_storage = &storage;
    connect(&storage.status(), &SaveStatus::changed, this, &NotesNotices::handleStatus);
    connect(&storage, &BlockStorage::keptAsideUnreadable, this, &NotesNotices::updateDetails);
    handleStatus();
}

void NotesNotices::handleStatus() {
    if (m_unreadable && m_unreadable->window() && m_storage->isComplete()) {
        m_unreadable->window()->close();
    } else if (!m_unreadable && m_storage->status().state() == SaveStatus::State::keptAside) {
        m_isWaiting = true;
        // Whoever presses the hot key right after the start wants to type, and the window would take the keyboard.
        m_call = m_scheduler.after(kGraceAtStart, [this] { showWaiting(); });
    }
}

void NotesNotices::showWaiting() {
    if (!m_isWaiting || !m_isDesktopSeen()) {
        return;
    }
    m_isWaiting = false;
    m_unreadable = std::make_unique<NoticeWindowController>(
        m_windowServices(), tr("Your notes could not be read"),
        std::vector<NoticeChoice>{
            {tr("Close"), [this] { m_unreadable->window()->close(); }},
            {tr("Open Folder"), [this] { QDesktopServices::openUrl(QUrl::fromLocalFile(folderOf(*m_storage))); }},
            {tr("Try Again"), [this] { m_storage->readKeptAside(); }}});
    updateDetails({});
    m_unreadable->show();
}

void NotesNotices::updateDetails(const QString &whyStillUnreadable) {
    QString details = tr("They are kept as %1 in %2. New notes go into a file of their own.")
                          .arg(m_storage->status().keptAs(), folderOf(*m_storage));
    if (!whyStillUnreadable.isEmpty()) {
        details += u'\n' + tr("They still cannot be read: %1").arg(whyStillUnreadable);
    }
    m_unreadable->setDetails(details);
}

} // namespace tallowby
