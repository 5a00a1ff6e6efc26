#include "app/LaunchAtLoginManager.h"

#include "platform/Log.h"
#include "platform/UserDefaults.h"
#include "platform/desktop/LoginItem.h"

namespace tallowby {

namespace {

constexpr QLatin1StringView kHasPromptedApprovalKey{"LaunchAtLoginManager.hasPromptedApproval"};

} // namespace

LaunchAtLoginManager::LaunchAtLoginManager(LoginItem &loginItem, UserDefaults &defaults)
    : m_loginItem(loginItem)
    , m_defaults(defaults) {}

void LaunchAtLoginManager::enableIfNeeded() {
    switch (m_loginItem.status()) {
    case LoginItemStatus::requiresApproval:
        logLine(
            u"[LaunchAtLoginManager] ⚠️ Login item requires user approval in System Settings → General → Login "
            u"Items");
        promptApprovalOnce();
        return;
    case LoginItemStatus::enabled:
        return;
    case LoginItemStatus::notRegistered:
    case LoginItemStatus::notFound:
        break;
    }
    const QString error = m_loginItem.registerItem();
    if (!error.isEmpty()) {
        logLine(QString(u"[LaunchAtLoginManager] ⚠️ Failed to register as login item: " + error));
        return;
    }
    const LoginItemStatus status = m_loginItem.status();
    logLine(QStringLiteral("[LaunchAtLoginManager] ✅ Registered as login item (status: %1)").arg(int(status)));
    if (status == LoginItemStatus::requiresApproval) {
        promptApprovalOnce();
    }
}

QString LaunchAtLoginManager::setEnabled(bool isEnabled) {
    // Who switches it off here knows where it is switched on again; no later start needs to show them.
    m_defaults.setBoolean(kHasPromptedApprovalKey, true);
    return m_loginItem.setEnabledByUser(isEnabled);
}

LoginItemStatus LaunchAtLoginManager::status() const {
    return m_loginItem.status();
}

void LaunchAtLoginManager::promptApprovalOnce() {
    if (m_defaults.boolean(kHasPromptedApprovalKey)) {
        return;
    }
    m_defaults.setBoolean(kHasPromptedApprovalKey, true);
    m_loginItem.openSystemSettings();
}

} // namespace tallowby
