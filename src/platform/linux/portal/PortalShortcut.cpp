#include "platform/linux/portal/PortalShortcut.h"

#include "platform/VirtualKey.h"

#include <QDBusMetaType>

#include <algorithm>
#include <array>
#include <utility>

namespace tallowby {

namespace {

struct KeyName {
    Qt::Key key;
    QLatin1StringView name;
};

/// As xkbcommon names them; letters and digits name themselves.
constexpr auto kKeyNames = std::to_array<KeyName>({
    {Qt::Key_Apostrophe, QLatin1StringView("apostrophe")},
    {Qt::Key_Backslash, QLatin1StringView("backslash")},
    {Qt::Key_Backspace, QLatin1StringView("BackSpace")},
    {Qt::Key_BracketLeft, QLatin1StringView("bracketleft")},
    {Qt::Key_BracketRight, QLatin1StringView("bracketright")},
    {Qt::Key_Comma, QLatin1StringView("comma")},
    {Qt::Key_Delete, QLatin1StringView("Delete")},
    {Qt::Key_Down, QLatin1StringView("Down")},
    {Qt::Key_Equal, QLatin1StringView("equal")},
    {Qt::Key_Escape, QLatin1StringView("Escape")},
    {Qt::Key_Left, QLatin1StringView("Left")},
    {Qt::Key_Minus, QLatin1StringView("minus")},
    {Qt::Key_Period, QLatin1StringView("period")},
    {Qt::Key_QuoteLeft, QLatin1StringView("grave")},
    {Qt::Key_Return, QLatin1StringView("Return")},
    {Qt::Key_Right, QLatin1StringView("Right")},
    {Qt::Key_Semicolon, QLatin1StringView("semicolon")},
    {Qt::Key_Slash, QLatin1StringView("slash")},
    {Qt::Key_Space, QLatin1StringView("space")},
    {Qt::Key_Tab, QLatin1StringView("Tab")},
    {Qt::Key_Up, QLatin1StringView("Up")},
});

constexpr auto kModifierNames = std::to_array<std::pair<std::uint32_t, QLatin1StringView>>({
    {carbon::controlKey, QLatin1StringView("CTRL")},
    {carbon::optionKey, QLatin1StringView("ALT")},
    {carbon::shiftKey, QLatin1StringView("SHIFT")},
    {carbon::cmdKey, QLatin1StringView("LOGO")},
});

QString nameOf(Qt::Key key) {
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9)) {
        return QString(QChar(char16_t(key))).toLower();
    }
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12) {
        return QStringLiteral("F%1").arg(key - Qt::Key_F1 + 1);
    }
    const auto found = std::ranges::find(kKeyNames, key, &KeyName::key);
    return found == kKeyNames.end() ? QString() : QString(found->name);
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

void registerPortalShortcut() {
    // Slots are found by the names of their types; the library knows this one by name only after its first message.
    qRegisterMetaType<QDBusObjectPath>();
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
}

QList<PortalShortcut> portalShortcuts(const QVariant &value) {
    if (value.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return value.value<QList<PortalShortcut>>();
    }
    const auto argument = value.value<QDBusArgument>();
    return argument.currentSignature() == u"a(sa{sv})" ? qdbus_cast<QList<PortalShortcut>>(argument)
                                                       : QList<PortalShortcut>();
}

QString portalTrigger(std::uint32_t keyCode, std::uint32_t modifiers) {
    const auto key = qtKeyFromVirtualKey(keyCode);
    const QString name = key ? nameOf(*key) : QString();
    if (name.isEmpty()) {
        return {};
    }
    QStringList parts;
    for (const auto &[modifier, modifierName] : kModifierNames) {
        if (modifiers & modifier) {
            parts << modifierName;
        }
    }
    return (parts << name).join(u'+');
}

} // namespace tallowby
