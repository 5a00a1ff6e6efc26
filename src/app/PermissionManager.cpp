#include "app/PermissionManager.h"

#include "platform/AppEvents.h"
#include "platform/Log.h"
#include "platform/NotificationCenter.h"
#include "platform/desktop/AccessibilityTrust.h"

namespace tallowby {

namespace {

QLatin1StringView stateName(PermissionState state) {
    switch (state) {
    case PermissionState::notDetermined:
        return QLatin1StringView("notDetermined");
    case PermissionState::granted:
        return QLatin1StringView("granted");
    case PermissionState::denied:
        return QLatin1StringView("denied");
    }
    Q_UNREACHABLE();
}

} // namespace

PermissionManager::PermissionManager(AccessibilityTrust &trust, NotificationCenter &notifications, Scheduler &scheduler)
    : m_trust(trust)
    , m_notifications(notifications)
    , m_scheduler(scheduler) {
    checkAccessibilityPermission();
}

QString PermissionManager::statusDescription() const {
    return u"Accessibility: " + stateName(m_accessibilityState);
}

void PermissionManager::checkAccessibilityPermission() {
    const bool isTrusted = m_trust.isProcessTrusted();
    const PermissionState state = isTrusted ? PermissionState::granted : PermissionState::denied;
    if (std::exchange(m_accessibilityState, state) != state) {
        Q_EMIT accessibilityStateChanged();
    }
    logLine(isTrusted ? u"[PermissionManager] ✅ Accessibility: Granted"
                      : u"[PermissionManager] ⚠️ Accessibility: Not granted");
}

void PermissionManager::requestAccessibilityPermission() {
    if (!m_trust.isProcessTrustedWithPrompt()) {
        m_trust.openSystemSettings();
    }
}

void PermissionManager::startMonitoringPermissions() {
    m_permissionCheckTimer = m_scheduler.every(kCheckInterval, [this] {
        checkAccessibilityPermission();
        if (m_accessibilityState == PermissionState::granted) {
            m_permissionCheckTimer.cancel();
            m_notifications.post(events::permissionsGranted);
        }
    });
}

} // namespace tallowby
