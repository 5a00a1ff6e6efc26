#pragma once

#include "app/shell/WindowController.h"
#include "platform/Scheduler.h"
#include "storage/DataFolderLock.h"

#include <QObject>

#include <functional>
#include <memory>

namespace tallowby {

class BlockStorage;
class NoticeWindowController;

/// The windows about notes that another program has open, and about notes that could not be read. Main thread only.
class NotesNotices : public QObject {
    Q_OBJECT

public:
    /// `isDesktopSeen` tells whether a window would be seen: over the canvas none is.
    NotesNotices(Scheduler &scheduler, std::function<WindowServices()> windowServices,
                 std::function<bool()> isDesktopSeen);
    ~NotesNotices() override;

    /// Another program has the lock. `ready` is called once it is ours; the program ends if the window is closed.
    void showInUse(DataFolderLock &lock, std::function<void()> ready);
    /// Shows the other window when the store says that its file could not be read. The store must outlive the event
    /// loop.
    void follow(BlockStorage &storage);
    /// To be called whenever the desktop comes back.
    void showWaiting();

private:
    void handleInUse(DataFolderLock::Outcome outcome);
    void updateDetails(const QString &whyStillUnreadable);
    void handleStatus();

    Scheduler &m_scheduler;
    const std::function<WindowServices()> m_windowServices;
    const std::function<bool()> m_isDesktopSeen;
    std::function<void()> m_ready;
    BlockStorage *m_storage = nullptr;
    std::unique_ptr<NoticeWindowController> m_inUse;
    std::unique_ptr<NoticeWindowController> m_unreadable;
    bool m_isWaiting = false;
    ScheduledCall m_call;
};

} // namespace tallowby
