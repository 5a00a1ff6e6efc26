#include "support/bus/ShortcutsDesk.h"

#include "platform/linux/portal/PortalShortcut.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QFile>
#include <QMutex>
#include <QThread>

namespace tallowby::test {

namespace {

const QString kRoot = QStringLiteral("/org/freedesktop/portal/desktop");

QString connectionName() {
    static int last = 0;
    return QStringLiteral("shortcuts-desk-%1").arg(++last);
}

} // namespace

const QString ShortcutsDesk::kBackendName = QStringLiteral("org.freedesktop.impl.portal.desktop.tallowbytest");

/// All objects of the desk.
class ShortcutsDesk::Object final : public QDBusVirtualObject {
public:
    Object(Role role, Script script)
        : m_role(role)
        , m_script(std::move(script)) {}

    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override {
        const QString member = message.member();
        const QVariantList arguments = message.arguments();
        if (member == u"Get") {
            answer(bus, message, m_script.version > 0, {QVariant::fromValue(QDBusVariant(m_script.version))});
        } else if (member == u"Register") {
            note(QString(u"Register " + arguments.value(0).toString()));
            answer(bus, message, true, {});
        } else if (member == u"CreateSession") {
            note(member);
            createSession(message, bus);
        } else if (member == u"AccessCamera") {
            note(member);
            const QMutexLocker lock(&m_mutex);
            respond(bus, message, qdbus_cast<QVariantMap>(arguments.last()), m_script.status, {});
        } else if (member == u"BindShortcuts") {
            bindShortcuts(message, bus);
        } else {
            note(member);
            answer(bus, message, member == u"Close" || member == u"ConfigureShortcuts", {});
        }
        return true;
    }

    [[nodiscard]] QString interface() const {
        return m_role == Role::portal ? QStringLiteral("org.freedesktop.portal.GlobalShortcuts")
                                      : QStringLiteral("org.freedesktop.impl.portal.GlobalShortcuts");
    }
    [[nodiscard]] QString sessionInterface() const {
        return m_role == Role::portal ? QStringLiteral("org.freedesktop.portal.Session")
                                      : QStringLiteral("org.freedesktop.impl.portal.Session");
    }

    void setStatus(std::uint32_t status) {
        const QMutexLocker lock(&m_mutex);
        m_script.status = status;
    }
    [[nodiscard]] QStringList calls() const {
        const QMutexLocker lock(&m_mutex);
        return m_calls;
    }
    [[nodiscard]] QString session() const {
        const QMutexLocker lock(&m_mutex);
        return m_session;
    }

private:
    void note(const QString &call) {
        const QMutexLocker lock(&m_mutex);
        m_calls << call;
    }

    static void answer(const QDBusConnection &bus, const QDBusMessage &message, bool isKnown,
                       const QVariantList &arguments) {
        bus.send(isKnown ? message.createReply(arguments)
                         : message.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("not here")));
    }

    /// A backend answers at once, the portal in a signal of the request's object.
    void respond(const QDBusConnection &bus, const QDBusMessage &message, const QVariantMap &options,
                 std::uint32_t status, const QVariantMap &results) const {
        if (m_role == Role::backend) {
            bus.send(message.createReply({status, results}));
            return;
        }
        const QString request = kRoot + u"/request/" + message.service().mid(1).replace(u'.', u'_') + u'/' +
                                options.value(QStringLiteral("handle_token")).toString();
        bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
        QDBusMessage response = QDBusMessage::createSignal(request, QStringLiteral("org.freedesktop.portal.Request"),
                                                           QStringLiteral("Response"));
        bus.send(response << status << results);
    }

    void createSession(const QDBusMessage &message, const QDBusConnection &bus) {
        const QVariantList arguments = message.arguments();
        const auto options = qdbus_cast<QVariantMap>(arguments.last());
        const QString session =
            m_role == Role::backend
                ? arguments.at(1).value<QDBusObjectPath>().path()
                : QString(kRoot + u"/session/1_1/" + options.value(QStringLiteral("session_handle_token")).toString());
        {
            const QMutexLocker lock(&m_mutex);
            m_session = session;
        }
        respond(bus, message, options, 0, {{QStringLiteral("session_handle"), session}});
    }

    void bindShortcuts(const QDBusMessage &message, const QDBusConnection &bus) {
        const QVariantList arguments = message.arguments();
        const qsizetype first = m_role == Role::backend ? 2 : 1;
        QList<PortalShortcut> shortcuts = portalShortcuts(arguments.at(first));
        for (PortalShortcut &shortcut : shortcuts) {
            note(QString(u"BindShortcuts " + shortcut.id + u' ' +
                         shortcut.properties.value(QStringLiteral("preferred_trigger")).toString()));
            shortcut.properties.insert(QStringLiteral("trigger_description"), m_script.keys);
        }
        if (!m_script.isBound) {
            shortcuts.clear();
        }
        const QMutexLocker lock(&m_mutex);
        respond(bus, message, qdbus_cast<QVariantMap>(arguments.last()), m_script.status,
                {{QStringLiteral("shortcuts"), QVariant::fromValue(shortcuts)}});
    }

    const Role m_role;
    Script m_script;
    mutable QMutex m_mutex;
    QStringList m_calls;
    QString m_session;
};

struct ShortcutsDesk::Life {
    explicit Life(const QString &address)
        : bus(QDBusConnection::connectToBus(address, connectionName())) {}

    void send(const QString &path, const QString &interface, const QString &name, const QVariantList &arguments) {
        QDBusMessage signal = QDBusMessage::createSignal(path, interface, name);
        signal.setArguments(arguments);
        bus.send(signal);
    }

    QDBusConnection bus;
    QThread thread;
    std::unique_ptr<Object> object;
};

ShortcutsDesk::ShortcutsDesk(const QString &address, Role role, Script script)
    : m_life(std::make_unique<Life>(address)) {
    registerPortalShortcut();
    m_life->object = std::make_unique<Object>(role, std::move(script));
    m_life->bus.registerVirtualObject(kRoot, m_life->object.get(), QDBusConnection::SubPath);
    m_life->object->moveToThread(&m_life->thread);
    m_life->thread.start();
    m_life->bus.registerService(role == Role::portal ? QStringLiteral("org.freedesktop.portal.Desktop") : kBackendName);
}

ShortcutsDesk::~ShortcutsDesk() {
    const QString name = m_life->bus.name();
    m_life->bus.unregisterObject(kRoot, QDBusConnection::UnregisterTree);
    m_life->bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
    m_life->thread.quit();
    m_life->thread.wait();
}

void ShortcutsDesk::setStatus(std::uint32_t status) {
    m_life->object->setStatus(status);
}

QStringList ShortcutsDesk::calls() const {
    return m_life->object->calls();
}

QString ShortcutsDesk::session() const {
    return m_life->object->session();
}

void ShortcutsDesk::press(const QString &activationToken) {
    QVariantMap options;
    if (!activationToken.isEmpty()) {
        options.insert(QStringLiteral("activation_token"), activationToken);
    }
    m_life->send(kRoot, m_life->object->interface(), QStringLiteral("Activated"),
                 {QVariant::fromValue(QDBusObjectPath(session())), QStringLiteral("toggle"), qulonglong(1), options});
}

void ShortcutsDesk::press(const QString &session, const QString &shortcut) {
    m_life->send(kRoot, m_life->object->interface(), QStringLiteral("Activated"),
                 {QVariant::fromValue(QDBusObjectPath(session)), shortcut, qulonglong(1), QVariantMap()});
}

void ShortcutsDesk::release() {
    m_life->send(
        kRoot, m_life->object->interface(), QStringLiteral("Deactivated"),
        {QVariant::fromValue(QDBusObjectPath(session())), QStringLiteral("toggle"), qulonglong(2), QVariantMap()});
}

void ShortcutsDesk::giveOtherKeys(const QString &keys) {
    const QList<PortalShortcut> shortcuts{{QStringLiteral("toggle"), {{QStringLiteral("trigger_description"), keys}}}};
    m_life->send(kRoot, m_life->object->interface(), QStringLiteral("ShortcutsChanged"),
                 {QVariant::fromValue(QDBusObjectPath(session())), QVariant::fromValue(shortcuts)});
}

void ShortcutsDesk::endSession() {
    // A backend's signal has no details.
    const QVariantList details =
        m_life->object->interface().contains(u"impl") ? QVariantList() : QVariantList{QVariantMap()};
    m_life->send(session(), m_life->object->sessionInterface(), QStringLiteral("Closed"), details);
}

RealPortal::RealPortal(const QProcessEnvironment &session) {
    QFile description(m_folder.file(QStringLiteral("test.portal")));
    static_cast<void>(description.open(QFile::WriteOnly));
    description.write("[portal]\nDBusName=" + ShortcutsDesk::kBackendName.toUtf8() +
                      "\nInterfaces=org.freedesktop.impl.portal.GlobalShortcuts\nUseIn=tallowbytest\n");
    description.close();
    QProcessEnvironment environment = session;
    environment.insert(QStringLiteral("XDG_DESKTOP_PORTAL_DIR"), m_folder.path());
    environment.insert(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("tallowbytest"));
    m_process = ChildProcess({QByteArrayLiteral("/usr/libexec/xdg-desktop-portal")}, environment);
}

} // namespace tallowby::test
