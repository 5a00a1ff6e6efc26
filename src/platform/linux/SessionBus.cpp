#include "platform/linux/SessionBus.h"

#include <QFileInfo>

#include <atomic>

namespace tallowby {

QDBusConnection connectToSessionBus() {
    static std::atomic<unsigned> lastNumber{0};
    const QString name = QStringLiteral("tallowby-%1").arg(++lastNumber);
    // Without an address the library would start a bus of its own, which nobody else is on.
    const bool hasBus = !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
                        QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus");
    return hasBus ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name) : QDBusConnection(name);
}

} // namespace tallowby
