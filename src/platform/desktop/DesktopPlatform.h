#pragma once

#include <memory>

namespace tallowby {

class AccessibilityTrust;
class Audio;
class DesktopCapture;
class Displays;
class HotKeyService;
class LoginItem;
class MotionPreference;
class Presentation;
class Scheduler;
class ScreenLock;
class StatusArea;
class Video;
class Workspace;

/// Everything that the desktop gives, for one run of the program. Made once, after the QGuiApplication and on its
/// thread; the services live as long as this object.
class DesktopPlatform {
public:
    virtual ~DesktopPlatform() = default;

    [[nodiscard]] virtual AccessibilityTrust &accessibilityTrust() = 0;
    [[nodiscard]] virtual Audio &audio() = 0;
    [[nodiscard]] virtual DesktopCapture &desktopCapture() = 0;
    [[nodiscard]] virtual Displays &displays() = 0;
    [[nodiscard]] virtual HotKeyService &hotKeys() = 0;
    [[nodiscard]] virtual LoginItem &loginItem() = 0;
    [[nodiscard]] virtual MotionPreference &motionPreference() = 0;
    [[nodiscard]] virtual Presentation &presentation() = 0;
    [[nodiscard]] virtual ScreenLock &screenLock() = 0;
    [[nodiscard]] virtual StatusArea &statusArea() = 0;
    [[nodiscard]] virtual Video &video() = 0;
    [[nodiscard]] virtual Workspace &workspace() = 0;
};

/// The services of the system that this program was built for. `scheduler` outlives them.
[[nodiscard]] std::unique_ptr<DesktopPlatform> makeDesktopPlatform(Scheduler &scheduler);

} // namespace tallowby
