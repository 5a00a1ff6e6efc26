#pragma once

#include "platform/Scheduler.h"

#include <QObject>

namespace tallowby {

class AccessibilityTrust;
class NotificationCenter;

enum class PermissionState { notDetermined, granted, denied };

/// Tracks whether the desktop lets this program have keys that work everywhere, and announces the grant. Main thread.
class PermissionManager : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds kCheckInterval{1};

    /// Checks once at once.
    PermissionManager(AccessibilityTrust &trust, NotificationCenter &notifications, Scheduler &scheduler);

    [[nodiscard]] PermissionState accessibilityState() const { return m_accessibilityState; }
    /// "Accessibility: " and the state's name.
    [[nodiscard]] QString statusDescription() const;

    /// Sets the state to granted or denied and logs it.
    void checkAccessibilityPermission();
    /// Has the desktop ask the user for the permission; where that gives none, opens the desktop's settings for it.
    void requestAccessibilityPermission();
    /// Checks once a second until the grant is there, posts `permissionsGranted` once, and stops.
    void startMonitoringPermissions();

Q_SIGNALS:
    void accessibilityStateChanged();

private:
    AccessibilityTrust &m_trust;
    NotificationCenter &m_notifications;
    Scheduler &m_scheduler;
    PermissionState m_accessibilityState = PermissionState::notDetermined;
    ScheduledCall m_permissionCheckTimer;
};

} // namespace tallowby
