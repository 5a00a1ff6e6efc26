#include "platform/linux/SessionBus.h"

#include <QFileInfo>

#include <atomic>

namespace tallowby {

QDBusConnection connectToSessionBus() {
    static std::atomic<unsigned> lastNumber{0};
    const QString name = QStringLiteral("tallowby-%1").arg(++lastNumber);
    QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (address.isEmpty()) {
        const QString socket = qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus";
        if (!QFileInfo::exists(socket)) {
            return QDBusConnection(name); // The library would now start a bus of its own, which nobody else is on.
        }
        address = u"unix:path=" + socket;
    }
    return QDBusConnection::connectToBus(address, name);
}

} // namespace tallowby
