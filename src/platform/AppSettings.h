#pragma once

#include "platform/UserDefaults.h"
#include "platform/desktop/Displays.h"
#include "platform/theme/Appearance.h"

#include <QObject>
#include <qqmlintegration.h>

#include <cstdint>
#include <optional>

namespace tallowby {

class NotificationCenter;

/// The user's persistent choices: the hot key, the display to turn over, and how the program looks and moves. Main
/// thread only. Every write is stored at once, also when the value stays the same; a write of either half of the hot
/// key posts `tallowbyHotkeyChanged`.
class AppSettings : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(quint32 hotkeyKeyCode READ hotkeyKeyCode WRITE setHotkeyKeyCode NOTIFY hotkeyKeyCodeChanged)
    Q_PROPERTY(quint32 hotkeyModifiers READ hotkeyModifiers WRITE setHotkeyModifiers NOTIFY hotkeyModifiersChanged)

public:
    /// The Space key's virtual key code.
    static constexpr std::uint32_t kDefaultHotkeyKeyCode = 49;
    /// Option alone, in the Carbon modifier mask.
    static constexpr std::uint32_t kDefaultHotkeyModifiers = 2048;

    /// Reads every key. A stored number outside 0 … 4,294,967,295 ends the program with one clear line.
    AppSettings(UserDefaults &defaults, NotificationCenter &notifications, const Displays &displays);

    [[nodiscard]] std::optional<std::uint32_t> selectedDisplayID() const { return m_selectedDisplayID; }
    void setSelectedDisplayID(std::optional<std::uint32_t> displayID);

    [[nodiscard]] quint32 hotkeyKeyCode() const { return m_hotkeyKeyCode; }
    void setHotkeyKeyCode(quint32 keyCode);

    [[nodiscard]] quint32 hotkeyModifiers() const { return m_hotkeyModifiers; }
    void setHotkeyModifiers(quint32 modifiers);

    /// Light, dark, or as the desktop is. What is stored and no such word counts as the desktop's.
    [[nodiscard]] Appearance appearance() const { return m_appearance; }
    void setAppearance(Appearance appearance);

    /// Whether movements become fades even where the desktop would let them be.
    [[nodiscard]] bool reducesMotion() const { return m_reducesMotion; }
    void setReducesMotion(bool reduces);

    /// The display to turn over: the selected one while it is connected, else the main one. None without any display.
    [[nodiscard]] std::optional<Display> resolvedScreen() const;

Q_SIGNALS:
    void selectedDisplayIDChanged();
    void hotkeyKeyCodeChanged();
    void hotkeyModifiersChanged();
    void appearanceChanged();
    void reducesMotionChanged();

private:
    UserDefaults &m_defaults;
    NotificationCenter &m_notifications;
    const Displays &m_displays;
    std::optional<std::uint32_t> m_selectedDisplayID;
    std::uint32_t m_hotkeyKeyCode = kDefaultHotkeyKeyCode;
    std::uint32_t m_hotkeyModifiers = kDefaultHotkeyModifiers;
    Appearance m_appearance = Appearance::system;
    bool m_reducesMotion = false;
};

} // namespace tallowby
