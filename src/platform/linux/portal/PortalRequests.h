#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>
#include <QObject>
#include <QVariantList>
#include <QVariantMap>

#include <cstdint>
#include <functional>

namespace tallowby {

inline constexpr QLatin1StringView kPortalService{"org.freedesktop.portal.Desktop"};
inline constexpr QLatin1StringView kPortalPath{"/org/freedesktop/portal/desktop"};

/// Calls of the desktop portal that are answered later, by the user as a rule (org.freedesktop.portal.Request). Main
/// thread only.
class PortalRequests : public QObject {
    Q_OBJECT

public:
    /// The portal did not take the call.
    static constexpr std::int32_t kCallFailed = -3;

    /// 0 and what the user has granted; 1 when the user declined, 2 when it ended in another way; or `kCallFailed`.
    using Answer = std::function<void(std::int32_t status, const QVariantMap &results)>;

    explicit PortalRequests(const QDBusConnection &bus)
        : m_bus(bus) {}

    /// `options` go last.
    void send(const QString &interface, const QString &method, const QVariantList &arguments, QVariantMap options,
              Answer answer);
    /// Nobody wants the answers that have not come yet.
    void forgetAll();

private:
    void await(const QString &path, Answer answer);
    void finish(const QString &path, std::int32_t status, const QVariantMap &results);

private Q_SLOTS:
    void takeResponse(uint status, const QVariantMap &results, const QDBusMessage &message);

private:
    QDBusConnection m_bus;
    /// By the path of the request's object.
    QHash<QString, Answer> m_waiting;
    unsigned m_lastNumber = 0;
};

} // namespace tallowby
