#include "platform/AppSettings.h"

#include "platform/AppEvents.h"
#include "platform/NotificationCenter.h"

#include <algorithm>
#include <limits>

namespace tallowby {

namespace {

constexpr QLatin1StringView kSelectedDisplayKey{"Settings.selectedDisplayID"};
constexpr QLatin1StringView kHotkeyKeyCodeKey{"Settings.hotkeyKeyCode"};
constexpr QLatin1StringView kHotkeyModifiersKey{"Settings.hotkeyModifiers"};
constexpr QLatin1StringView kAppearanceKey{"Settings.appearance"};
constexpr QLatin1StringView kReducesMotionKey{"Settings.reducesMotion"};

std::optional<std::uint32_t> readUnsigned32(const UserDefaults &defaults, QLatin1StringView key) {
    if (!defaults.contains(key)) {
        return std::nullopt;
    }
    const auto stored = defaults.integer(key);
    if (!stored || *stored < 0 || *stored > std::numeric_limits<std::uint32_t>::max()) {
        qFatal("The setting %s in %s is not a whole number from 0 to 4294967295. Correct or remove that line.",
               key.data(), qUtf8Printable(defaults.fileName()));
    }
    return static_cast<std::uint32_t>(*stored);
}

} // namespace

AppSettings::AppSettings(UserDefaults &defaults, NotificationCenter &notifications, const Displays &displays)
    : m_defaults(defaults)
    , m_notifications(notifications)
    , m_displays(displays)
    , m_selectedDisplayID(readUnsigned32(defaults, kSelectedDisplayKey))
    , m_hotkeyKeyCode(readUnsigned32(defaults, kHotkeyKeyCodeKey).value_or(kDefaultHotkeyKeyCode))
    , m_hotkeyModifiers(readUnsigned32(defaults, kHotkeyModifiersKey).value_or(kDefaultHotkeyModifiers))
    , m_appearance(appearanceNamed(defaults.string(kAppearanceKey).value_or(QString())))
    , m_reducesMotion(defaults.boolean(kReducesMotionKey)) {}

void AppSettings::setSelectedDisplayID(std::optional<std::uint32_t> displayID) {
    if (displayID) {
        m_defaults.setInteger(kSelectedDisplayKey, *displayID);
    } else {
        m_defaults.remove(kSelectedDisplayKey);
    }
    if (m_selectedDisplayID != displayID) {
        m_selectedDisplayID = displayID;
        Q_EMIT selectedDisplayIDChanged();
    }
}

void AppSettings::setHotkeyKeyCode(quint32 keyCode) {
    m_defaults.setInteger(kHotkeyKeyCodeKey, keyCode);
    if (std::exchange(m_hotkeyKeyCode, keyCode) != keyCode) {
        Q_EMIT hotkeyKeyCodeChanged();
    }
    m_notifications.post(events::tallowbyHotkeyChanged);
}

void AppSettings::setHotkeyModifiers(quint32 modifiers) {
    m_defaults.setInteger(kHotkeyModifiersKey, modifiers);
    if (std::exchange(m_hotkeyModifiers, modifiers) != modifiers) {
        Q_EMIT hotkeyModifiersChanged();
    }
    m_notifications.post(events::tallowbyHotkeyChanged);
}

void AppSettings::setAppearance(Appearance appearance) {
    m_defaults.setString(kAppearanceKey, appearanceName(appearance));
    if (std::exchange(m_appearance, appearance) != appearance) {
        Q_EMIT appearanceChanged();
    }
}

void AppSettings::setReducesMotion(bool reduces) {
    m_defaults.setBoolean(kReducesMotionKey, reduces);
    if (std::exchange(m_reducesMotion, reduces) != reduces) {
        Q_EMIT reducesMotionChanged();
    }
}

std::optional<Display> AppSettings::resolvedScreen() const {
    const std::vector<Display> displays = m_displays.all();
    if (m_selectedDisplayID) {
        const auto selected = std::ranges::find(displays, *m_selectedDisplayID, &Display::id);
        if (selected != displays.end()) {
            return *selected;
        }
    }
    const auto main = std::ranges::find(displays, true, &Display::isMain);
    return main == displays.end() ? std::nullopt : std::optional(*main);
}

} // namespace tallowby
