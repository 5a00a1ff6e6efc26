#pragma once

#include <QDBusArgument>
#include <QList>
#include <QString>
#include <QVariantMap>

#include <cstdint>

namespace tallowby {

/// A shortcut as the desktop portal's GlobalShortcuts interface writes it: (sa{sv}).
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut);
const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut);
/// Before the first shortcut is sent.
void registerPortalShortcut();

/// Those of an answer or a signal; empty when the value is something else.
[[nodiscard]] QList<PortalShortcut> portalShortcuts(const QVariant &value);
/// A combination in the form that freedesktop.org has for shortcuts, for example "ALT+space"; empty for a key
/// that it has no name for.
[[nodiscard]] QString portalTrigger(std::uint32_t keyCode, std::uint32_t modifiers);

} // namespace tallowby

Q_DECLARE_METATYPE(tallowby::PortalShortcut)
