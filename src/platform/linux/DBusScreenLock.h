#pragma once

#include "platform/desktop/ScreenLock.h"

#include <QDBusConnection>

namespace tallowby {

/// Listens to the screen savers on the session bus, which all have the same signal, and to the login manager on the
/// system bus (org.freedesktop.login1). Whatever is not there is not heard; nothing is started, and no answer is waited
/// for.
class DBusScreenLock final : public ScreenLock {
    Q_OBJECT

public:
    DBusScreenLock();
    ~DBusScreenLock() override;

private:
    void listenToLoginManager();

private Q_SLOTS:
    void takeActive(bool isActive);
    void takeSleep(bool isBeginning);
    void takeLock();
    void takeUnlock();

private:
    QDBusConnection m_session;
    QDBusConnection m_system;
};

} // namespace tallowby
