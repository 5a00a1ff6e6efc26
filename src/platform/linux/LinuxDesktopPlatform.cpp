#include "platform/desktop/DesktopPlatform.h"

#include "platform/linux/DBusScreenLock.h"
#include "platform/linux/DesktopMotionPreference.h"
#include "platform/linux/TrayWatch.h"
#include "platform/linux/XdgLoginItem.h"
#include "platform/linux/gstreamer/GstAudio.h"
#include "platform/linux/gstreamer/GstVideo.h"
#include "platform/linux/portal/PortalHotKeyService.h"
#include "platform/linux/portal/PortalTrust.h"
#include "platform/linux/x11/X11DesktopCapture.h"
#include "platform/linux/x11/X11Displays.h"
#include "platform/linux/x11/X11HotKeyService.h"
#include "platform/linux/x11/X11KeyOrder.h"
#include "platform/linux/x11/X11Presentation.h"
#include "platform/linux/x11/X11Trust.h"
#include "platform/linux/x11/X11Workspace.h"
#include "platform/linux/x11/XcbConnection.h"

namespace tallowby {

namespace {

bool isWaylandSession() {
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland";
}

/// The services of an X11 session. A Wayland session has an X server as well, for the windows; the hot key comes from
/// the desktop portal there, since that server sees only what is typed into its own windows. A desktop whose portal
/// gives no keys has that or nothing.
class LinuxDesktopPlatform final : public DesktopPlatform {
public:
    explicit LinuxDesktopPlatform(Scheduler &scheduler)
        : m_workspace(m_x11)
        , m_presentation(m_x11)
        , m_capture(m_x11)
        , m_trust(m_x11)
        , m_motionPreference(m_x11)
        , m_trayWatch(m_x11) {
        using Sight = X11HotKeyService::Sight;
        if (isWaylandSession()) {
            auto portal = std::make_unique<PortalHotKeyService>(
                scheduler, [this](const QByteArray &token) { m_presentation.setActivationToken(token); });
            if (portal->isAvailable() || !m_x11.isValid()) {
                m_portalTrust = std::make_unique<PortalTrust>(*portal);
                m_hotKeys = std::move(portal);
                return;
            }
        }
        m_hotKeys = std::make_unique<X11HotKeyService>(std::make_unique<XcbConnection>(), scheduler,
                                                       isWaylandSession() ? Sight::itsOwnWindows : Sight::everything);
    }

    [[nodiscard]] AccessibilityTrust &accessibilityTrust() override {
        return m_portalTrust ? static_cast<AccessibilityTrust &>(*m_portalTrust) : m_trust;
    }
    [[nodiscard]] Audio &audio() override { return m_audio; }
    [[nodiscard]] Video &video() override { return m_video; }
    [[nodiscard]] DesktopCapture &desktopCapture() override { return m_capture; }
    [[nodiscard]] Displays &displays() override { return m_displays; }
    [[nodiscard]] HotKeyService &hotKeys() override { return *m_hotKeys; }
    [[nodiscard]] LoginItem &loginItem() override { return m_loginItem; }
    [[nodiscard]] MotionPreference &motionPreference() override { return m_motionPreference; }
    [[nodiscard]] Presentation &presentation() override { return m_presentation; }
    [[nodiscard]] ScreenLock &screenLock() override { return m_screenLock; }
    [[nodiscard]] StatusArea &statusArea() override { return m_trayWatch; }
    [[nodiscard]] Workspace &workspace() override { return m_workspace; }

private:
    X11KeyOrder m_keyOrder;
    XcbConnection m_x11;
    X11Workspace m_workspace;
    X11Presentation m_presentation;
    X11DesktopCapture m_capture;
    X11Displays m_displays;
    std::unique_ptr<HotKeyService> m_hotKeys;
    X11Trust m_trust;
    std::unique_ptr<PortalTrust> m_portalTrust;
    XdgLoginItem m_loginItem;
    DesktopMotionPreference m_motionPreference;
    DBusScreenLock m_screenLock;
    TrayWatch m_trayWatch;
    GstAudio m_audio;
    GstVideo m_video;
};

} // namespace

std::unique_ptr<DesktopPlatform> makeDesktopPlatform(Scheduler &scheduler) {
    return std::make_unique<LinuxDesktopPlatform>(scheduler);
}

} // namespace tallowby
