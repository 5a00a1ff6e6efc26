#pragma once

#include "app/shell/StartAtLogin.h"
#include "app/shell/WindowController.h"
#include "flip/hotkey/HotkeyAdvisor.h"
#include "platform/NotificationCenter.h"

#include <cstdint>
#include <functional>
#include <set>
#include <vector>

class QKeyEvent;

namespace tallowby {

class AppSettings;
class MotionPreference;
class PermissionManager;

/// A key of the hot key, as the window shows it.
struct OnboardingKey {
    Q_GADGET
    QML_VALUE_TYPE(onboardingKey)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(bool isLit MEMBER isLit)

public:
    QString text;
    /// While it is held down.
    bool isLit = false;
};

/// What the window shows and does; all of it outlives the window.
struct OnboardingServices {
    PermissionManager &permissionManager;
    AppSettings &settings;
    NotificationCenter &notifications;
    const MotionPreference &motionPreference;
    HotkeyAdvisor &hotkeyAdvisor;
    StartAtLogin &startAtLogin;
    /// True once there is a note on the canvas.
    std::function<bool()> hasNotes;
    /// The user is done with the window.
    std::function<void()> finished;
};

/// The window that says what the program does, gets the permission that its key needs, and has the user try the key.
/// Main thread only.
class OnboardingWindowController : public WindowController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(Step step READ step NOTIFY stepChanged)
    Q_PROPERTY(QList<tallowby::OnboardingKey> keys READ keys NOTIFY keysChanged)
    /// Whether the picture shows the back of the screen.
    Q_PROPERTY(bool isTurned READ isTurned NOTIFY keysChanged)
    Q_PROPERTY(bool movesFreely READ movesFreely NOTIFY keysChanged)
    Q_PROPERTY(tallowby::HotkeyAdvisor *hotkeyAdvisor READ hotkeyAdvisor CONSTANT)
    Q_PROPERTY(tallowby::StartAtLogin *startAtLogin READ startAtLogin CONSTANT)

public:
    enum class Step {
        Permission, ///< the desktop has not given a key that works everywhere
        OtherKey,   ///< it has, but the combination belongs to another program
        SomePlaces, ///< the key works in front of some programs only
        TryIt,      ///< the key works and waits to be pressed
        WriteNote,  ///< it was pressed, and nothing is written yet
        Done        ///< there is a first note
    };
    Q_ENUM(Step)

    OnboardingWindowController(const WindowServices &window, const OnboardingServices &services);

    [[nodiscard]] Step step() const;
    [[nodiscard]] QList<OnboardingKey> keys() const;
    [[nodiscard]] bool isTurned() const;
    [[nodiscard]] bool movesFreely() const;
    [[nodiscard]] HotkeyAdvisor *hotkeyAdvisor() const { return &m_services.hotkeyAdvisor; }
    [[nodiscard]] StartAtLogin *startAtLogin() const { return &m_services.startAtLogin; }

    Q_INVOKABLE void askForPermission();
    Q_INVOKABLE void finish() { m_services.finished(); }

Q_SIGNALS:
    void stepChanged();
    void keysChanged();

protected:
    void prepareToShow() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void takeKey(const QKeyEvent &event, bool isDown);
    void letGoOfAllKeys();
    void setCanvasUp(bool isUp);

    const OnboardingServices m_services;
    bool m_wasTried = false;
    bool m_isCanvasUp = false;
    std::uint32_t m_heldModifiers = 0;
    std::set<std::uint32_t> m_heldKeys;
    std::vector<NotificationCenter::Observation> m_observations;
};

} // namespace tallowby
