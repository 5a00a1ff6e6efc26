#include "platform/linux/portal/PortalHotKeyService.h"

#include "platform/linux/SessionBus.h"
#include "platform/linux/SettingsPrograms.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

const QString kShortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString kSessionInterface = QStringLiteral("org.freedesktop.portal.Session");
const QString kShortcutID = QStringLiteral("toggle");
/// From which on the portal opens the desktop's page for one application's shortcuts.
constexpr std::uint32_t kConfiguringVersion = 2;
/// Of what the desktop says; it is shown in one line.
constexpr qsizetype kLongestKeys = 80;
constexpr qsizetype kLongestToken = 256;

/// Documented as strings, and object paths from some portals.
QString pathIn(const QVariant &value) {
    return value.metaType() == QMetaType::fromType<QDBusObjectPath>() ? value.value<QDBusObjectPath>().path()
                                                                      : value.toString();
}

QString inOneLine(const QString &text) {
    return text.simplified().left(kLongestKeys);
}

} // namespace

/// Keeps no more than a name for the service, so that it may outlive it.
class PortalHotKeyService::Registration final : public HotKeyRegistration {
public:
    explicit Registration(PortalHotKeyService *service)
        : m_service(service) {}
    ~Registration() override {
        if (m_service) {
            m_service->release();
        }
    }

private:
    QPointer<PortalHotKeyService> m_service;
};

PortalHotKeyService::PortalHotKeyService(Scheduler &scheduler, std::function<void(const QByteArray &)> activationToken)
    : m_scheduler(scheduler)
    , m_activationToken(std::move(activationToken))
    , m_bus(connectToSessionBus())
    , m_requests(m_bus) {
    registerPortalShortcut();
    if (!m_bus.isConnected()) {
        return;
    }
    m_owner.setConnection(m_bus);
    m_owner.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    m_owner.addWatchedService(kPortalService);
    connect(&m_owner, &QDBusServiceWatcher::serviceOwnerChanged, this, &PortalHotKeyService::followOwner);
    const auto listen = [this](const char *signal, const char *slot) {
        m_bus.connect(kPortalService, kPortalPath, kShortcutsInterface, QLatin1StringView(signal), this, slot);
    };
    listen("Activated", SLOT(takeActivation(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    listen("Deactivated", SLOT(takeDeactivation(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    listen("ShortcutsChanged", SLOT(takeChange(QDBusObjectPath, QList<tallowby::PortalShortcut>)));
    meetPortal();
}

PortalHotKeyService::~PortalHotKeyService() {
    closeSession();
    m_requests.forgetAll();
    const QString name = m_bus.name();
    m_owner.setConnection(QDBusConnection(QString()));
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

std::int32_t PortalHotKeyService::installHandler(std::function<void()> pressed) {
    m_pressed = std::move(pressed);
    return m_bus.isConnected() ? 0 : kNoPortal;
}

void PortalHotKeyService::installDecisionHandler(std::function<void(std::int32_t status)> decided) {
    m_decided = std::move(decided);
}

HotKeyResult PortalHotKeyService::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID) {
    if (m_wish || !isAvailable()) {
        return {kNoPortal, nullptr};
    }
    m_wish = {keyCode, modifiers};
    openSession();
    return {kHotKeyUndecided, std::make_unique<Registration>(this)};
}

void PortalHotKeyService::openKeyAssignment() {
    if (m_version < kConfiguringVersion || m_session.isEmpty()) {
        openKeyboardSettings();
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(kPortalService, kPortalPath, kShortcutsInterface,
                                                       QStringLiteral("ConfigureShortcuts"));
    call << QVariant::fromValue(QDBusObjectPath(m_session)) << QString() << QVariantMap();
    m_bus.asyncCall(call);
}

/// A program outside a sandbox tells the portal its name before anything else; older portals do not know the call.
QDBusMessage PortalHotKeyService::introduction() const {
    QDBusMessage call = QDBusMessage::createMethodCall(kPortalService, kPortalPath,
                                                       QStringLiteral("org.freedesktop.host.portal.Registry"),
                                                       QStringLiteral("Register"));
    return call << QGuiApplication::desktopFileName() << QVariantMap();
}

QDBusMessage PortalHotKeyService::versionQuestion() const {
    QDBusMessage call = QDBusMessage::createMethodCall(
        kPortalService, kPortalPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    return call << kShortcutsInterface << QStringLiteral("version");
}

void PortalHotKeyService::meetPortal() {
    const QDBusMessage met = m_bus.call(introduction(), QDBus::Block, int(kAnswerLimit.count()));
    if (QDBusError(met).type() == QDBusError::ServiceUnknown) {
        return;
    }
    const QDBusReply<QDBusVariant> version = m_bus.call(versionQuestion(), QDBus::Block, int(kAnswerLimit.count()));
    setVersion(version.isValid() ? version.value().variant() : QVariant());
}

void PortalHotKeyService::setVersion(const QVariant &version) {
    m_version = version.metaType() == QMetaType::fromType<uint>() ? version.toUInt() : 0;
}

void PortalHotKeyService::meetReturnedPortal() {
    auto *met = new QDBusPendingCallWatcher(m_bus.asyncCall(introduction()), this);
    connect(met, &QDBusPendingCallWatcher::finished, this, [this, met] {
        met->deleteLater();
        auto *asked = new QDBusPendingCallWatcher(m_bus.asyncCall(versionQuestion()), this);
        connect(asked, &QDBusPendingCallWatcher::finished, this, [this, asked] {
            asked->deleteLater();
            const QDBusPendingReply<QDBusVariant> version = *asked;
            setVersion(version.isValid() ? version.value().variant() : QVariant());
            if (!m_wish || m_isAsking || !m_session.isEmpty()) {
                return;
            }
            if (isAvailable()) {
                openSession();
            } else {
                fail(kNoPortal);
            }
        });
    });
}

void PortalHotKeyService::followOwner(const QString &, const QString &oldOwner, const QString &newOwner) {
    if (!oldOwner.isEmpty()) {
        m_version = 0;
        m_requests.forgetAll();
        m_session.clear();
        m_isAsking = false;
        m_assignedKeys.clear();
        if (m_wish) {
            decide(kHotKeyUndecided);
        }
    }
    // At the start the portal may only have come because of what it is being asked already.
    if (!newOwner.isEmpty() && m_version == 0) {
        meetReturnedPortal();
    }
}

void PortalHotKeyService::openSession() {
    m_isAsking = true;
    const QString token = QStringLiteral("tallowby%1").arg(++m_lastSession);
    m_requests.send(kShortcutsInterface, QStringLiteral("CreateSession"), {},
                    {{QStringLiteral("session_handle_token"), token}},
                    [this](std::int32_t status, const QVariantMap &results) {
                        const QString session = pathIn(results.value(QStringLiteral("session_handle")));
                        if (status != 0 || !session.startsWith(kPortalPath + u"/session/")) {
                            fail(status != 0 ? status : PortalRequests::kCallFailed);
                            return;
                        }
                        m_session = session;
                        m_bus.connect(kPortalService, session, kSessionInterface, QStringLiteral("Closed"), this,
                                      SLOT(takeClosing(QDBusMessage)));
                        bind();
                    });
}

void PortalHotKeyService::bind() {
    PortalShortcut shortcut{kShortcutID, {{QStringLiteral("description"), tr("Turn the screen over")}}};
    if (const QString trigger = portalTrigger(m_wish->keyCode, m_wish->modifiers); !trigger.isEmpty()) {
        shortcut.properties.insert(QStringLiteral("preferred_trigger"), trigger);
    }
    const QVariantList arguments{QVariant::fromValue(QDBusObjectPath(m_session)),
                                 QVariant::fromValue(QList<PortalShortcut>{shortcut}), QString()};
    m_requests.send(kShortcutsInterface, QStringLiteral("BindShortcuts"), arguments, {},
                    [this](std::int32_t status, const QVariantMap &results) {
                        if (status != 0) {
                            fail(status);
                        } else {
                            takeBinding(results);
                        }
                    });
}

void PortalHotKeyService::takeBinding(const QVariantMap &results) {
    const auto shortcuts = portalShortcuts(results.value(QStringLiteral("shortcuts")));
    if (std::ranges::find(shortcuts, kShortcutID, &PortalShortcut::id) == shortcuts.end()) {
        fail(kNotBound);
        return;
    }
    m_isAsking = false;
    m_lastActivation.reset();
    takeKeys(shortcuts);
    decide(0);
}

void PortalHotKeyService::takeKeys(const QList<PortalShortcut> &shortcuts) {
    const auto found = std::ranges::find(shortcuts, kShortcutID, &PortalShortcut::id);
    m_assignedKeys = found == shortcuts.end()
                         ? QString()
                         : inOneLine(found->properties.value(QStringLiteral("trigger_description")).toString());
}

void PortalHotKeyService::fail(std::int32_t status) {
    closeSession();
    decide(status);
}

void PortalHotKeyService::decide(std::int32_t status) {
    if (m_decided) {
        const auto decided = m_decided; // It may install another.
        decided(status);
    }
}

void PortalHotKeyService::closeSession() {
    m_isAsking = false;
    m_assignedKeys.clear();
    if (const QString session = std::exchange(m_session, {}); !session.isEmpty()) {
        m_bus.disconnect(kPortalService, session, kSessionInterface, QStringLiteral("Closed"), this,
                         SLOT(takeClosing(QDBusMessage)));
        m_bus.send(QDBusMessage::createMethodCall(kPortalService, session, kSessionInterface, QStringLiteral("Close")));
    }
}

void PortalHotKeyService::release() {
    m_wish.reset();
    m_requests.forgetAll();
    closeSession();
}

bool PortalHotKeyService::isOurs(const QDBusObjectPath &session, const QString &shortcut) const {
    return !m_isAsking && !m_session.isEmpty() && session.path() == m_session && shortcut == kShortcutID;
}

void PortalHotKeyService::takeActivation(const QDBusObjectPath &session, const QString &shortcut, qulonglong,
                                         const QVariantMap &options) {
    if (!isOurs(session, shortcut)) {
        return;
    }
    const Scheduler::Duration now = m_scheduler.monotonic();
    const auto before = std::exchange(m_lastActivation, now);
    if (before && now - *before < kRepeatWindow) {
        return;
    }
    const QByteArray token = options.value(QStringLiteral("activation_token")).toString().toUtf8();
    if (!token.isEmpty() && token.size() <= kLongestToken) {
        m_activationToken(token);
    }
    if (m_pressed) {
        const auto pressed = m_pressed; // It may install another.
        pressed();
    }
}

void PortalHotKeyService::takeDeactivation(const QDBusObjectPath &session, const QString &shortcut, qulonglong,
                                           const QVariantMap &) {
    if (isOurs(session, shortcut)) {
        m_lastActivation.reset();
    }
}

void PortalHotKeyService::takeChange(const QDBusObjectPath &session, const QList<PortalShortcut> &shortcuts) {
    if (!m_isAsking && !m_session.isEmpty() && session.path() == m_session) {
        takeKeys(shortcuts);
        decide(0);
    }
}

void PortalHotKeyService::takeClosing(const QDBusMessage &message) {
    if (message.path() == m_session) {
        m_session.clear();
        fail(kTakenBack);
    }
}

} // namespace tallowby
