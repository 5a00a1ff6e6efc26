#pragma once

#include "app/shell/StartAtLogin.h"
#include "app/shell/WindowController.h"
#include "app/sync/SyncStatus.h"
#include "flip/hotkey/HotkeyAdvisor.h"
#include "platform/AppSettings.h"

#include <QRectF>

#include <cstdint>
#include <functional>
#include <optional>

namespace tallowby {

class Displays;
class MotionPreference;

/// One line of the choice of a display.
struct DisplayChoice {
    Q_GADGET
    QML_VALUE_TYPE(displayChoice)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString detail MEMBER detail)
    Q_PROPERTY(bool isChosen MEMBER isChosen)
    Q_PROPERTY(bool isTurned MEMBER isTurned)
    Q_PROPERTY(QRectF place MEMBER place)

public:
    QString name;
    /// Connector and size, or why the display is not there.
    QString detail;
    bool isChosen = false;
    /// Whether it is the display that turns, by whichever choice.
    bool isTurned = false;
    /// In pixels, from the top left corner of all displays together; empty for what is no display.
    QRectF place;
    /// None for "whichever is the main one".
    std::optional<std::uint32_t> displayID;
};

/// What the settings show and change; all of it outlives the window.
struct SettingsServices {
    AppSettings &settings;
    const Displays &displays;
    const MotionPreference &desktopMotion;
    HotkeyAdvisor &hotkeyAdvisor;
    StartAtLogin &startAtLogin;
    SyncStatus &syncStatus;
    std::function<void()> showIntroduction;
    std::function<void()> showWhatsNew;
    std::function<void()> checkForUpdates;
};

/// The window in which the user changes the hot key, the display and how the program looks and moves. Main thread only.
class SettingsWindowController : public WindowController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(tallowby::AppSettings *settings READ settings CONSTANT)
    Q_PROPERTY(tallowby::HotkeyAdvisor *hotkeyAdvisor READ hotkeyAdvisor CONSTANT)
    Q_PROPERTY(tallowby::StartAtLogin *startAtLogin READ startAtLogin CONSTANT)
    Q_PROPERTY(QList<tallowby::DisplayChoice> displayChoices READ displayChoices NOTIFY displayChoicesChanged)
    /// Of all displays together, in pixels.
    Q_PROPERTY(QSizeF displaysSize READ displaysSize NOTIFY displayChoicesChanged)
    /// 0 as the desktop, 1 light, 2 dark.
    Q_PROPERTY(int appearance READ appearance NOTIFY appearanceChanged)
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY motionChanged)
    /// Whether the desktop asks for less movement already.
    Q_PROPERTY(bool desktopReducesMotion READ desktopReducesMotion NOTIFY motionChanged)
    Q_PROPERTY(QString dataFolder READ dataFolder CONSTANT)
    Q_PROPERTY(tallowby::SyncStatus *syncStatus READ syncStatus CONSTANT)

public:
    SettingsWindowController(const WindowServices &window, const SettingsServices &services);

    [[nodiscard]] AppSettings *settings() const { return &m_services.settings; }
    [[nodiscard]] HotkeyAdvisor *hotkeyAdvisor() const { return &m_services.hotkeyAdvisor; }
    [[nodiscard]] StartAtLogin *startAtLogin() const { return &m_services.startAtLogin; }
    [[nodiscard]] QList<DisplayChoice> displayChoices() const;
    [[nodiscard]] QSizeF displaysSize() const;
    [[nodiscard]] int appearance() const { return int(m_services.settings.appearance()); }
    [[nodiscard]] bool reducesMotion() const { return desktopReducesMotion() || m_services.settings.reducesMotion(); }
    [[nodiscard]] bool desktopReducesMotion() const;
    [[nodiscard]] QString dataFolder() const;
    [[nodiscard]] SyncStatus *syncStatus() const { return &m_services.syncStatus; }

    /// Takes the choice at that place of `displayChoices`.
    Q_INVOKABLE void chooseDisplay(int index);
    Q_INVOKABLE void chooseAppearance(int appearance);
    Q_INVOKABLE void setReducesMotion(bool reduces);
    Q_INVOKABLE void openDataFolder();
    /// In place of this window.
    Q_INVOKABLE void showIntroduction();
    Q_INVOKABLE void showWhatsNew() { m_services.showWhatsNew(); }
    Q_INVOKABLE void checkForUpdates() { m_services.checkForUpdates(); }

Q_SIGNALS:
    void displayChoicesChanged();
    void appearanceChanged();
    void motionChanged();

protected:
    void prepareToShow() override;

private:
    const SettingsServices m_services;
};

} // namespace tallowby
