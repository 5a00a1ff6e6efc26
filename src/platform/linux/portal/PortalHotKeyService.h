#pragma once

#include "platform/Scheduler.h"
#include "platform/desktop/HotKeyService.h"
#include "platform/linux/portal/PortalRequests.h"
#include "platform/linux/portal/PortalShortcut.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QObject>

#include <optional>

namespace tallowby {

/// The hot key as a shortcut of the desktop portal (org.freedesktop.portal.GlobalShortcuts): the desktop asks the user
/// and gives the key, and says in its own words which. One shortcut, on a connection to the bus of its own, since the
/// portal knows an application by its connection. A session of the portal binds once; each new try is a new session. A
/// portal that vanishes and returns is asked again.
class PortalHotKeyService final : public QObject, public HotKeyService {
    Q_OBJECT

public:
    static constexpr std::int32_t kNoPortal = -2;
    /// The user's answer was yes, and yet the desktop has bound nothing.
    static constexpr std::int32_t kNotBound = -4;
    /// The desktop has ended the session.
    static constexpr std::int32_t kTakenBack = -5;
    /// An activation so soon after the last one, with no release in between, is a key that is held down.
    static constexpr std::chrono::milliseconds kRepeatWindow{700};
    /// How long the start may wait for the portal, which the bus may have to start first.
    static constexpr std::chrono::milliseconds kAnswerLimit{2000};

    /// Asks the portal for its version, and waits. `activationToken` is told the token that comes with a press and
    /// lets a window take the keyboard.
    PortalHotKeyService(Scheduler &scheduler, std::function<void(const QByteArray &)> activationToken);
    ~PortalHotKeyService() override;

    /// Whether there is a portal that gives keys.
    [[nodiscard]] bool isAvailable() const { return m_version > 0; }

    /// 0, or `kNoPortal` without a bus.
    std::int32_t installHandler(std::function<void()> pressed) override;
    [[nodiscard]] HotKeyResult registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id) override;
    void installDecisionHandler(std::function<void(std::int32_t status)> decided) override;
    [[nodiscard]] std::optional<QString> assignedKeys() const override { return m_assignedKeys; }
    void openKeyAssignment() override;

private:
    class Registration;

    void meetPortal();
    void meetReturnedPortal();
    void followOwner(const QString &name, const QString &oldOwner, const QString &newOwner);
    void openSession();
    void bind();
    void takeBinding(const QVariantMap &results);
    void takeKeys(const QList<PortalShortcut> &shortcuts);
    void fail(std::int32_t status);
    void decide(std::int32_t status);
    void closeSession();
    void release();
    void setVersion(const QVariant &version);
    [[nodiscard]] QDBusMessage introduction() const;
    [[nodiscard]] QDBusMessage versionQuestion() const;
    [[nodiscard]] bool isOurs(const QDBusObjectPath &session, const QString &shortcut) const;

private Q_SLOTS:
    void takeActivation(const QDBusObjectPath &session, const QString &shortcut, qulonglong time,
                        const QVariantMap &options);
    void takeDeactivation(const QDBusObjectPath &session, const QString &shortcut, qulonglong time,
                          const QVariantMap &options);
    void takeChange(const QDBusObjectPath &session, const QList<tallowby::PortalShortcut> &shortcuts);
    void takeClosing(const QDBusMessage &message);

private:
    /// What somebody wants registered.
    struct Wish {
        std::uint32_t keyCode = 0;
        std::uint32_t modifiers = 0;
    };

    Scheduler &m_scheduler;
    const std::function<void(const QByteArray &)> m_activationToken;
    QDBusConnection m_bus;
    PortalRequests m_requests;
    QDBusServiceWatcher m_owner;
    std::uint32_t m_version = 0;
    std::function<void()> m_pressed;
    std::function<void(std::int32_t)> m_decided;
    std::optional<Wish> m_wish;
    /// Of the session that is being bound or is bound; empty without one.
    QString m_session;
    unsigned m_lastSession = 0;
    bool m_isAsking = false;
    QString m_assignedKeys;
    std::optional<Scheduler::Duration> m_lastActivation;
};

} // namespace tallowby
