#include "platform/linux/DesktopKeys.h"

#include "platform/VirtualKey.h"

#include <QCoreApplication>
#include <QStringList>

#include <array>

namespace tallowby {

namespace {

struct Use {
    const char *desktop;
    std::uint32_t keyCode;
    std::uint32_t modifiers;
    const char *noun;
};

constexpr std::array kUses{
    Use{"GNOME", keycode::kSpace, carbon::optionKey, QT_TRANSLATE_NOOP("DesktopKeys", "the window menu")},
    Use{"X-Cinnamon", keycode::kSpace, carbon::optionKey, "the window menu"},
    Use{"MATE", keycode::kSpace, carbon::optionKey, "the window menu"},
    Use{"XFCE", keycode::kSpace, carbon::optionKey, "the window menu"},
    Use{"KDE", keycode::kSpace, carbon::optionKey, QT_TRANSLATE_NOOP("DesktopKeys", "its search, KRunner")},
    Use{"GNOME", keycode::kSpace, carbon::cmdKey, QT_TRANSLATE_NOOP("DesktopKeys", "the keyboard layouts")},
};

} // namespace

QString desktopUseOfKeys(std::uint32_t keyCode, std::uint32_t modifiers) {
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    for (const Use &use : kUses) {
        if (use.keyCode == keyCode && use.modifiers == modifiers &&
            desktops.contains(QLatin1StringView(use.desktop), Qt::CaseInsensitive)) {
            return QCoreApplication::translate("DesktopKeys", use.noun);
        }
    }
    return {};
}

} // namespace tallowby
