#pragma once

#include "platform/NotificationCenter.h"
#include "platform/Scheduler.h"
#include "platform/desktop/HotKeyService.h"

#include <QObject>

#include <memory>

namespace tallowby {

class AppSettings;

/// Holds the one system-wide key combination and turns each press into `flipToggleRequested`. Follows the settings by
/// itself while it runs. A combination that another program holds is logged and does not work until the user chooses
/// another. Main thread only.
class HotkeyListener : public QObject {
    Q_OBJECT

public:
    HotkeyListener(NotificationCenter &notifications, const AppSettings &settings, HotKeyService &service,
                   Scheduler &scheduler);
    /// Gives the combination back.
    ~HotkeyListener() override;

    /// Does nothing while it runs. When presses cannot be delivered at all it stays stopped, and may be started again.
    void start();
    void stop();
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// Whether the combination of the settings is held, so that its presses come here.
    [[nodiscard]] bool isRegistered() const { return m_hotKeyRef && !m_isUndecided && !m_isLost; }
    /// Whether the desktop is still asking the user about it.
    [[nodiscard]] bool isUndecided() const { return m_isUndecided; }

    /// Drops the registration in force and, while running, registers what the settings say now.
    void registerCurrentHotkey();

Q_SIGNALS:
    /// A registration was tried anew, with either end, or the desktop has changed its mind about one.
    void registrationTried();

private:
    void handleHotkeyChanged();
    void handlePress();
    void handleDecision(std::int32_t status);
    void logStatus(std::int32_t status) const;

    NotificationCenter &m_notifications;
    const AppSettings &m_settings;
    HotKeyService &m_service;
    Scheduler &m_scheduler;
    /// Also kept while its combination is lost: the system may give it back.
    std::unique_ptr<HotKeyRegistration> m_hotKeyRef;
    bool m_isUndecided = false;
    bool m_isLost = false;
    bool m_isRunning = false;
    const HotKeyID m_hotKeyID;
    ScheduledCall m_pendingPress;
    NotificationCenter::Observation m_hotkeyChanged;
    /// Outlived by the handler that the service keeps: no press reaches a listener that has gone.
    std::shared_ptr<HotkeyListener *> m_handlerTarget;
};

} // namespace tallowby
