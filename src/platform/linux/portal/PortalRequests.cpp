#include "platform/linux/portal/PortalRequests.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace tallowby {

namespace {

const QString kRequestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString kResponse = QStringLiteral("Response");

} // namespace

void PortalRequests::send(const QString &interface, const QString &method, const QVariantList &arguments,
                          QVariantMap options, Answer answer) {
    // The answer may be there before the call returns: its path is known beforehand.
    const QString token = QStringLiteral("tallowby%1").arg(++m_lastNumber);
    const QString sender = m_bus.baseService().mid(1).replace(u'.', u'_');
    const QString path = kPortalPath + QStringLiteral("/request/%1/%2").arg(sender, token);
    await(path, std::move(answer));
    options.insert(QStringLiteral("handle_token"), token);

    QDBusMessage call = QDBusMessage::createMethodCall(kPortalService, kPortalPath, interface, method);
    call.setArguments(QVariantList(arguments) << options);
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, path] {
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        watcher->deleteLater();
        if (!reply.isValid()) {
            finish(path, kCallFailed, {});
        } else if (reply.value().path() != path && m_waiting.contains(path)) {
            // Portals before 2017 made paths of their own.
            await(reply.value().path(), m_waiting.take(path));
        }
    });
}

void PortalRequests::forgetAll() {
    for (const QString &path : m_waiting.keys()) {
        m_waiting.insert(path, {});
        finish(path, kCallFailed, {});
    }
}

void PortalRequests::await(const QString &path, Answer answer) {
    m_waiting.insert(path, std::move(answer));
    m_bus.connect(kPortalService, path, kRequestInterface, kResponse, this,
                  SLOT(takeResponse(uint, QVariantMap, QDBusMessage)));
}

void PortalRequests::finish(const QString &path, std::int32_t status, const QVariantMap &results) {
    const auto waiting = m_waiting.find(path);
    if (waiting == m_waiting.end()) {
        return;
    }
    const Answer answer = *waiting;
    m_waiting.erase(waiting);
    m_bus.disconnect(kPortalService, path, kRequestInterface, kResponse, this,
                     SLOT(takeResponse(uint, QVariantMap, QDBusMessage)));
    if (answer) {
        answer(status, results);
    }
}

void PortalRequests::takeResponse(uint status, const QVariantMap &results, const QDBusMessage &message) {
    finish(message.path(), status > 2 ? 2 : std::int32_t(status), results);
}

} // namespace tallowby
