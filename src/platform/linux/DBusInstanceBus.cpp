#include "platform/linux/DBusInstanceBus.h"

#include "platform/Log.h"
#include "platform/linux/SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace tallowby {

namespace {

constexpr QLatin1StringView kService{"org.tallowby.Tallowby"};
constexpr QLatin1StringView kPath{"/org/tallowby/Tallowby"};
constexpr QLatin1StringView kInterface{"org.tallowby.Tallowby"};
constexpr QLatin1StringView kNoOwnerError{"org.freedesktop.DBus.Error.NameHasNoOwner"};
/// Between finding the name taken and calling its owner, that one may end. Then it is free again.
constexpr int kClaimAttempts = 3;

QString methodName(InstanceCommand command) {
    switch (command) {
    case InstanceCommand::activate:
        return QStringLiteral("Activate");
    case InstanceCommand::toggle:
        return QStringLiteral("Toggle");
    case InstanceCommand::settings:
        return QStringLiteral("Settings");
    case InstanceCommand::quit:
        return QStringLiteral("Quit");
    }
    Q_UNREACHABLE();
}

} // namespace

DBusInstanceBus::DBusInstanceBus()
    : m_bus(connectToSessionBus()) {}

DBusInstanceBus::~DBusInstanceBus() {
    const QString name = m_bus.name();
    m_bus.unregisterObject(kPath);
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name); // Gives the name up as well.
}

InstanceBus::Claim DBusInstanceBus::claim(InstanceCommand command, std::function<void(InstanceCommand)> handler) {
    if (!m_bus.isConnected()) {
        return Claim::unavailable;
    }
    // Before the name: from the moment that it is ours, others may call.
    if (handler) {
        m_commands = std::make_unique<InstanceCommands>(std::move(handler));
        m_bus.registerObject(kPath, m_commands.get(), QDBusConnection::ExportScriptableContents);
    }
    for (int attempt = 0; attempt < kClaimAttempts; ++attempt) {
        const auto registration = m_bus.interface()->registerService(
            kService, QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
        if (registration.value() == QDBusConnectionInterface::ServiceRegistered) {
            return Claim::first;
        }
        switch (deliver(command)) {
        case Answer::taken:
            return Claim::handedOver;
        case Answer::refused:
            logLine(QStringLiteral("[InstanceBus] ⚠️ The Tallowby that runs already does not know the command %1")
                        .arg(methodName(command)));
            return Claim::handedOver;
        case Answer::nobody:
            break;
        }
    }
    return Claim::unavailable;
}

bool DBusInstanceBus::send(InstanceCommand command) {
    return m_bus.isConnected() && deliver(command) == Answer::taken;
}

DBusInstanceBus::Answer DBusInstanceBus::deliver(InstanceCommand command) {
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, methodName(command));
    call.setAutoStartService(false);
    const QDBusMessage reply = m_bus.call(call, QDBus::Block, int(kAnswerLimit.count()));
    if (reply.type() != QDBusMessage::ErrorMessage) {
        return Answer::taken;
    }
    switch (QDBusError(reply).type()) {
    case QDBusError::ServiceUnknown:
        return Answer::nobody;
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        // It has the call, but is busy. The bus says so too when the owner ends without having answered.
        return m_bus.interface()->isServiceRegistered(kService).value() ? Answer::taken : Answer::nobody;
    default:
        return reply.errorName() == kNoOwnerError ? Answer::nobody : Answer::refused;
    }
}

std::unique_ptr<InstanceBus> makeInstanceBus() {
    return std::make_unique<DBusInstanceBus>();
}

} // namespace tallowby
