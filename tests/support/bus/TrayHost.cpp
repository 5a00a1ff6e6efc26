#include "support/bus/TrayHost.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDateTime>

namespace tallowby::test {

namespace {

const QString kWatcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kItemPath = QStringLiteral("/StatusNotifierItem");
const QString kItemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString kMenuInterface = QStringLiteral("com.canonical.dbusmenu");

// Calls wait with the event loop running: an item may ask its watcher something meanwhile.

QString connectionName() {
    static int last = 0;
    return QStringLiteral("tray-host-%1").arg(++last);
}

/// (ia{sv}av): id, properties, children.
struct Layout {
    int id = 0;
    QVariantMap properties;
    std::vector<Layout> children;
};

Layout readLayout(const QDBusArgument &argument) {
    Layout layout;
    argument.beginStructure();
    argument >> layout.id >> layout.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        layout.children.push_back(readLayout(child.variant().value<QDBusArgument>()));
    }
    argument.endArray();
    argument.endStructure();
    return layout;
}

/// aas: each chord a list of modifiers and a key.
QString readShortcut(const QVariant &value) {
    if (value.userType() != qMetaTypeId<QDBusArgument>()) {
        return {};
    }
    QStringList chords;
    const auto argument = value.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QStringList chord;
        argument >> chord;
        chords << chord.join(u'+');
    }
    argument.endArray();
    return chords.join(u' ');
}

} // namespace

TrayHost::TrayHost(const QString &address)
    : m_bus(QDBusConnection::connectToBus(address, connectionName())) {
    m_bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this, QDBusConnection::ExportScriptableContents);
    m_bus.registerService(kWatcherName);
    Q_EMIT StatusNotifierHostRegistered();
}

TrayHost::~TrayHost() {
    const QString name = m_bus.name();
    m_bus.unregisterService(kWatcherName);
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

QStringList TrayHost::items() {
    QCoreApplication::processEvents();
    return m_items;
}

QVariant TrayHost::itemProperty(const QString &item, const QString &name) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        item, kItemPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << kItemInterface << name;
    const QDBusReply<QDBusVariant> reply = m_bus.call(call, QDBus::BlockWithGui);
    return reply.isValid() ? reply.value().variant() : QVariant();
}

std::vector<TrayMenuRow> TrayHost::menu(const QString &item) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(item, menuPath(item), kMenuInterface, QStringLiteral("GetLayout"));
    call << 0 << -1 << QStringList();
    const QDBusMessage reply = m_bus.call(call, QDBus::BlockWithGui);
    std::vector<TrayMenuRow> rows;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 2) {
        return rows;
    }
    for (const Layout &row : readLayout(reply.arguments().at(1).value<QDBusArgument>()).children) {
        rows.push_back({.id = row.id,
                        .label = row.properties.value(QStringLiteral("label")).toString(),
                        .shortcut = readShortcut(row.properties.value(QStringLiteral("shortcut"))),
                        .isSeparator = row.properties.value(QStringLiteral("type")) == QStringLiteral("separator")});
    }
    return rows;
}

bool TrayHost::click(const QString &item, const QString &label) {
    for (const TrayMenuRow &row : menu(item)) {
        if (row.label == label) {
            QDBusMessage call =
                QDBusMessage::createMethodCall(item, menuPath(item), kMenuInterface, QStringLiteral("Event"));
            call << row.id << QStringLiteral("clicked") << QVariant::fromValue(QDBusVariant(QString()))
                 << uint(QDateTime::currentSecsSinceEpoch());
            return m_bus.call(call, QDBus::BlockWithGui).type() == QDBusMessage::ReplyMessage;
        }
    }
    return false;
}

void TrayHost::activate(const QString &item) {
    QDBusMessage call = QDBusMessage::createMethodCall(item, kItemPath, kItemInterface, QStringLiteral("Activate"));
    call << 0 << 0;
    m_bus.call(call, QDBus::BlockWithGui);
}

void TrayHost::RegisterStatusNotifierItem(const QString &service) {
    // Some items give their path, on the connection that they call from.
    const QString item = service.startsWith(u'/') ? message().service() : service;
    if (!m_items.contains(item)) {
        m_items << item;
    }
    Q_EMIT StatusNotifierItemRegistered(item);
}

QString TrayHost::menuPath(const QString &item) {
    return itemProperty(item, QStringLiteral("Menu")).value<QDBusObjectPath>().path();
}

} // namespace tallowby::test
