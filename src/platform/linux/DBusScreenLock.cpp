#include "platform/linux/DBusScreenLock.h"

#include "platform/linux/SessionBus.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace tallowby {

namespace {

const QString kLoginService = QStringLiteral("org.freedesktop.login1");
const QString kLoginPath = QStringLiteral("/org/freedesktop/login1");
const QString kLoginManager = QStringLiteral("org.freedesktop.login1.Manager");
const QString kLoginSession = QStringLiteral("org.freedesktop.login1.Session");
const QString kSystemConnection = QStringLiteral("tallowby-system");

void leave(QDBusConnection &bus) {
    const QString name = bus.name();
    bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

} // namespace

DBusScreenLock::DBusScreenLock()
    : m_session(connectToSessionBus())
    , m_system(QDBusConnection::connectToBus(QDBusConnection::SystemBus, kSystemConnection)) {
    for (const char *desktop : {"freedesktop", "gnome", "cinnamon", "mate", "xfce", "kde"}) {
        const QString interface = QStringLiteral("org.%1.ScreenSaver").arg(QLatin1StringView(desktop));
        m_session.connect(QString(), QString(), interface, QStringLiteral("ActiveChanged"), this,
                          SLOT(takeActive(bool)));
    }
    m_activeSavers.setConnection(m_session);
    m_activeSavers.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_activeSavers, &QDBusServiceWatcher::serviceUnregistered, this, [this](const QString &saver) {
        m_activeSavers.removeWatchedService(saver);
        update();
    });
    if (m_system.isConnected()) {
        listenToLoginManager();
    }
}

DBusScreenLock::~DBusScreenLock() {
    leave(m_session);
    leave(m_system);
}

void DBusScreenLock::listenToLoginManager() {
    m_system.connect(kLoginService, kLoginPath, kLoginManager, QStringLiteral("PrepareForSleep"), this,
                     SLOT(takeSleep(bool)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(kLoginService, kLoginPath, kLoginManager, QStringLiteral("GetSession"));
    question << qEnvironmentVariable("XDG_SESSION_ID", QStringLiteral("auto"));
    question.setAutoStartService(false);
    auto *answer = new QDBusPendingCallWatcher(m_system.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusObjectPath> session = *answer;
        answer->deleteLater();
        if (session.isValid()) {
            listenToLoginSession(session.value().path());
        }
    });
}

void DBusScreenLock::listenToLoginSession(const QString &path) {
    m_system.connect(kLoginService, path, kLoginSession, QStringLiteral("Lock"), this, SLOT(takeLock()));
    m_system.connect(kLoginService, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                     QStringLiteral("PropertiesChanged"), this, SLOT(takeProperties(QString, QVariantMap)));
}

void DBusScreenLock::update() {
    setIsDrawn(m_isAsleep || m_isSessionLocked || !m_activeSavers.watchedServices().isEmpty());
}

void DBusScreenLock::takeActive(bool isActive) {
    if (isActive) {
        m_activeSavers.addWatchedService(message().service());
    } else {
        m_activeSavers.removeWatchedService(message().service());
    }
    update();
}

void DBusScreenLock::takeSleep(bool isBeginning) {
    m_isAsleep = isBeginning;
    update();
}

void DBusScreenLock::takeLock() {
    if (!isDrawn()) {
        Q_EMIT drawn();
    }
}

void DBusScreenLock::takeProperties(const QString &interface, const QVariantMap &changed) {
    const auto hint = changed.constFind(QStringLiteral("LockedHint"));
    if (interface == kLoginSession && hint != changed.cend() && hint->typeId() == QMetaType::Bool) {
        m_isSessionLocked = hint->toBool();
        update();
    }
}

} // namespace tallowby
