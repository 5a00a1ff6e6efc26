#pragma once

#include "platform/desktop/Video.h"
#include "platform/linux/portal/PortalRequests.h"

#include <QDBusConnection>
#include <QObject>

#include <atomic>
#include <functional>
#include <memory>

namespace tallowby {

/// The desktop portal's question whether a sandboxed program may use cameras (org.freedesktop.portal.Camera). The
/// desktop remembers the answer; asked once a run, it holds for the run. Belongs to the main thread.
class CameraPortal : public QObject {
    Q_OBJECT

public:
    CameraPortal();
    ~CameraPortal() override;

    /// Not determined until it has been asked. Any thread.
    [[nodiscard]] CameraAccess access() const { return m_access; }
    /// Any thread; `answer` is called by the main thread.
    void ask(std::function<void(bool isGranted)> answer);

private:
    void send(const std::function<void(bool)> &answer);

    std::atomic<CameraAccess> m_access = CameraAccess::notDetermined;
    QDBusConnection m_bus;
    PortalRequests m_requests;
};

/// Whether this program runs in a sandbox of which the portal is the door.
[[nodiscard]] bool isSandboxed();

} // namespace tallowby
