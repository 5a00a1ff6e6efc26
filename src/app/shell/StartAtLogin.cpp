#include "app/shell/StartAtLogin.h"

#include "app/LaunchAtLoginManager.h"
#include "platform/desktop/LoginItem.h"

namespace tallowby {

StartAtLogin::StartAtLogin(LaunchAtLoginManager &manager)
    : m_manager(manager) {}

bool StartAtLogin::isOn() const {
    return m_manager.status() == LoginItemStatus::enabled;
}

bool StartAtLogin::isAvailable() const {
    return m_manager.status() != LoginItemStatus::notFound;
}

QString StartAtLogin::detail() const {
    switch (m_manager.status()) {
    case LoginItemStatus::enabled:
        return tr("Waits in the background as soon as you log in");
    case LoginItemStatus::notRegistered:
        return tr("Not on this desktop's list of programs that start at login");
    case LoginItemStatus::requiresApproval:
        return tr("Switched off, and stays so until you switch it on");
    case LoginItemStatus::notFound:
        return tr("Works once Tallowby is installed");
    }
    Q_UNREACHABLE();
}

void StartAtLogin::setOn(bool isOn) {
    const QString error = m_manager.setEnabled(isOn);
    m_problem = error.isEmpty() ? QString() : tr("That did not work: %1").arg(error);
    Q_EMIT changed();
}

void StartAtLogin::refresh() {
    m_problem.clear();
    Q_EMIT changed();
}

} // namespace tallowby
