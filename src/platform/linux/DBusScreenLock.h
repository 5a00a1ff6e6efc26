#pragma once

#include "platform/desktop/ScreenLock.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusServiceWatcher>
#include <QVariantMap>

namespace tallowby {

/// Listens to the screen savers on the session bus, which all have the same signal, and to the login manager on the
/// system bus (org.freedesktop.login1). Whatever is not there is not heard; nothing is started, and no answer is waited
/// for.
///
/// The login manager's `Lock` only asks a locker to begin, and many lockers never say that they have ended. So it draws
/// the curtain for a moment; only what tells both its ends keeps it drawn.
class DBusScreenLock final : public ScreenLock, public QDBusContext {
    Q_OBJECT

public:
    DBusScreenLock();
    ~DBusScreenLock() override;

private:
    void listenToLoginManager();
    void listenToLoginSession(const QString &path);
    void update();

private Q_SLOTS:
    void takeActive(bool isActive);
    void takeSleep(bool isBeginning);
    void takeLock();
    void takeProperties(const QString &interface, const QVariantMap &changed);

private:
    QDBusConnection m_session;
    QDBusConnection m_system;
    /// Watches the screen savers that are on, since one that dies does not say that it is off.
    QDBusServiceWatcher m_activeSavers;
    bool m_isAsleep = false;
    bool m_isSessionLocked = false;
};

} // namespace tallowby
