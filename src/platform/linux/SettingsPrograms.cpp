#include "platform/linux/SettingsPrograms.h"

#include "platform/Log.h"

#include <QProcess>
#include <QStandardPaths>

#include <array>

namespace tallowby {

namespace {

constexpr auto kKeyboardSettings = std::to_array<SettingsProgram>({
    {QLatin1StringView("KDE"), QLatin1StringView("systemsettings"), QLatin1StringView("kcm_keys")},
    {QLatin1StringView("KDE"), QLatin1StringView("systemsettings5"), QLatin1StringView("kcm_keys")},
    {QLatin1StringView("GNOME"), QLatin1StringView("gnome-control-center"), QLatin1StringView("keyboard")},
    {QLatin1StringView("XFCE"), QLatin1StringView("xfce4-keyboard-settings"), {}},
    {QLatin1StringView("X-Cinnamon"), QLatin1StringView("cinnamon-settings"), QLatin1StringView("keyboard")},
    {QLatin1StringView("MATE"), QLatin1StringView("mate-keybinding-properties"), {}},
    {QLatin1StringView("LXQt"), QLatin1StringView("lxqt-config-globalkeyshortcuts"), {}},
});

} // namespace

bool openSettingsProgram(std::span<const SettingsProgram> programs) {
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    for (const SettingsProgram &settings : programs) {
        const QString program = QStandardPaths::findExecutable(settings.program);
        if (desktops.contains(settings.desktop) && !program.isEmpty()) {
            return QProcess::startDetached(program,
                                           settings.page.isEmpty() ? QStringList() : QStringList{settings.page});
        }
    }
    return false;
}

void openKeyboardSettings() {
    if (!openSettingsProgram(kKeyboardSettings)) {
        logLine(u"[Settings] ⚠️ This desktop has no settings for keys that could be opened");
    }
}

} // namespace tallowby
