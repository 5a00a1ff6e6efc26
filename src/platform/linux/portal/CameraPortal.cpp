#include "platform/linux/portal/CameraPortal.h"

#include "platform/linux/SessionBus.h"

#include <QFileInfo>

#include <utility>

namespace tallowby {

bool isSandboxed() {
    return !qEnvironmentVariableIsEmpty("FLATPAK_ID") || QFileInfo::exists(QStringLiteral("/.flatpak-info"));
}

CameraPortal::CameraPortal()
    : m_bus(connectToSessionBus())
    , m_requests(m_bus) {}

CameraPortal::~CameraPortal() {
    m_requests.forgetAll();
    const QString name = m_bus.name();
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

void CameraPortal::ask(std::function<void(bool isGranted)> answer) {
    QMetaObject::invokeMethod(
        this, [this, answer = std::move(answer)] { send(answer); }, Qt::QueuedConnection);
}

void CameraPortal::send(const std::function<void(bool)> &answer) {
    m_requests.send(QStringLiteral("org.freedesktop.portal.Camera"), QStringLiteral("AccessCamera"), {}, {},
                    [this, answer](std::int32_t status, const QVariantMap &) {
                        // What went wrong is no answer: the next film asks again.
                        if (status == 0 || status == 1) {
                            m_access = status == 0 ? CameraAccess::authorized : CameraAccess::denied;
                        }
                        answer(status == 0);
                    });
}

} // namespace tallowby
