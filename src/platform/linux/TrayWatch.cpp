#include "platform/linux/TrayWatch.h"

#include "platform/linux/SessionBus.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace tallowby {

namespace {

// KDE's name for it is the one that desktops use; the freedesktop.org one never came to be.
constexpr QLatin1StringView kWatcherService{"org.kde.StatusNotifierWatcher"};
constexpr QLatin1StringView kWatcherPath{"/StatusNotifierWatcher"};
constexpr QLatin1StringView kWatcherInterface{"org.kde.StatusNotifierWatcher"};
constexpr QLatin1StringView kHostProperty{"IsStatusNotifierHostRegistered"};

} // namespace

TrayWatch::TrayWatch(XcbConnection &x11)
    : m_x11(x11)
    , m_bus(connectToSessionBus()) {
    if (m_x11.isValid()) {
        connect(&m_x11, &XcbConnection::eventReceived, this, &TrayWatch::handleEvent);
        // New owners of a manager's selection tell the root window. What others of this program want to hear stays.
        const auto attributes = xcbReply<xcb_get_window_attributes_reply>(
            m_x11.handle(), xcb_get_window_attributes(m_x11.handle(), m_x11.root()));
        const std::uint32_t events = (attributes ? attributes->your_event_mask : 0) | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_x11.handle(), m_x11.root(), XCB_CW_EVENT_MASK, &events);
        m_x11.flush();
    }
    if (!m_bus.isConnected()) {
        lookForEmbedder();
        return;
    }
    m_watcher.setConnection(m_bus);
    m_watcher.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    m_watcher.addWatchedService(kWatcherService);
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &TrayWatch::askWatcher);
    m_bus.connect(kWatcherService, kWatcherPath, kWatcherInterface, QStringLiteral("StatusNotifierHostRegistered"),
                  this, SLOT(takeHost()));
    askWatcher();
}

TrayWatch::~TrayWatch() {
    const QString name = m_bus.name();
    m_watcher.setConnection(QDBusConnection(QString()));
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

void TrayWatch::askWatcher() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        kWatcherService, kWatcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << QString(kWatcherInterface) << QString(kHostProperty);
    call.setAutoStartService(false);
    auto *answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        answer->deleteLater();
        if (reply.isValid() && reply.value().variant().toBool()) {
            announce();
        } else {
            lookForEmbedder();
        }
    });
}

void TrayWatch::lookForEmbedder() {
    if (!m_x11.isValid()) {
        return;
    }
    const xcb_atom_t selection = m_x11.atom("_NET_SYSTEM_TRAY_S" + QByteArray::number(m_x11.screenNumber()));
    const auto owner =
        xcbReply<xcb_get_selection_owner_reply>(m_x11.handle(), xcb_get_selection_owner(m_x11.handle(), selection));
    if (owner && owner->owner != XCB_WINDOW_NONE) {
        announce();
    }
}

void TrayWatch::handleEvent(const xcb_generic_event_t &event) {
    if ((event.response_type & ~0x80) != XCB_CLIENT_MESSAGE) {
        return;
    }
    const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
    if (!m_hasAppeared && message.type == m_x11.atom("MANAGER")) {
        lookForEmbedder();
    }
}

void TrayWatch::takeHost() {
    announce();
}

void TrayWatch::announce() {
    if (!m_hasAppeared) {
        m_hasAppeared = true;
        Q_EMIT appeared();
    }
}

} // namespace tallowby
