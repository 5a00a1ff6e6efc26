#include "platform/linux/DesktopMotionPreference.h"

#include "platform/linux/SessionBus.h"
#include "platform/linux/x11/XSettings.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace tallowby {

namespace {

constexpr QLatin1StringView kPortalService{"org.freedesktop.portal.Desktop"};
constexpr QLatin1StringView kPortalPath{"/org/freedesktop/portal/desktop"};
constexpr QLatin1StringView kPortalInterface{"org.freedesktop.portal.Settings"};
constexpr QLatin1StringView kNamespace{"org.gnome.desktop.interface"};
constexpr QLatin1StringView kKey{"enable-animations"};

/// Portals wrap the value once or twice, depending on their age.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

DesktopMotionPreference::DesktopMotionPreference(XcbConnection &x11)
    : m_x11(x11)
    , m_bus(connectToSessionBus()) {
    if (m_bus.isConnected()) {
        askPortal();
    }
}

DesktopMotionPreference::~DesktopMotionPreference() {
    const QString name = m_bus.name();
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

bool DesktopMotionPreference::prefersReducedMotion() const {
    return qEnvironmentVariable("TALLOWBY_REDUCED_MOTION") == u"1" || !m_portalAllowsAnimations ||
           xsettingsInteger(m_x11, "Gtk/EnableAnimations") == 0;
}

void DesktopMotionPreference::askPortal() {
    // Qt registers its own types on the bus's thread, which may come too late for the slot's signature to be
    // understood.
    qRegisterMetaType<QDBusVariant>();
    m_bus.connect(kPortalService, kPortalPath, kPortalInterface, QStringLiteral("SettingChanged"), this,
                  SLOT(takePortalChange(QString, QString, QDBusVariant)));
    QDBusMessage call =
        QDBusMessage::createMethodCall(kPortalService, kPortalPath, kPortalInterface, QStringLiteral("Read"));
    call << QString(kNamespace) << QString(kKey);
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) {
            takePortalChange(kNamespace, kKey, reply.value());
        }
        watcher->deleteLater();
    });
}

void DesktopMotionPreference::takePortalChange(const QString &nameSpace, const QString &key,
                                               const QDBusVariant &value) {
    if (nameSpace != kNamespace || key != kKey) {
        return;
    }
    const QVariant plain = unwrapped(value.variant());
    if (plain.metaType() == QMetaType::fromType<bool>()) {
        m_portalAllowsAnimations = plain.toBool();
    }
}

} // namespace tallowby
