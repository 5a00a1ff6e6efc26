#include "platform/linux/XdgLoginItem.h"

#include "platform/linux/DesktopEntry.h"
#include "platform/linux/SettingsPrograms.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
#include <array>

namespace tallowby {

namespace {

constexpr QLatin1StringView kEntryName{"org.tallowby.Tallowby.desktop"};

constexpr auto kSettingsPrograms = std::to_array<SettingsProgram>({
    {QLatin1StringView("KDE"), QLatin1StringView("systemsettings"), QLatin1StringView("kcm_autostart")},
    {QLatin1StringView("KDE"), QLatin1StringView("systemsettings5"), QLatin1StringView("kcm_autostart")},
    {QLatin1StringView("GNOME"), QLatin1StringView("gnome-session-properties"), {}},
    {QLatin1StringView("GNOME"), QLatin1StringView("gnome-tweaks"), {}},
    {QLatin1StringView("XFCE"), QLatin1StringView("xfce4-session-settings"), {}},
    {QLatin1StringView("X-Cinnamon"), QLatin1StringView("cinnamon-settings"), QLatin1StringView("startup")},
    {QLatin1StringView("MATE"), QLatin1StringView("mate-session-properties"), {}},
    {QLatin1StringView("LXQt"), QLatin1StringView("lxqt-config-session"), {}},
});

/// The desktop's own folder for settings: a Flatpak sandbox gives its program another.
QString configFolder() {
    if (qEnvironmentVariableIsEmpty("FLATPAK_ID")) {
        return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    }
    const QString outside = qEnvironmentVariable("HOST_XDG_CONFIG_HOME");
    return outside.isEmpty() ? QDir::homePath() + u"/.config" : outside;
}

} // namespace

XdgLoginItem::XdgLoginItem()
    : XdgLoginItem(QCoreApplication::applicationFilePath(), configFolder() + u"/autostart",
                   qEnvironmentVariable("FLATPAK_ID")) {}

XdgLoginItem::XdgLoginItem(const QString &programFile, const QString &autostartFolder, const QString &flatpakId)
    : m_programFile(programFile)
    , m_autostartFolder(autostartFolder)
    , m_flatpakId(flatpakId) {}

LoginItemStatus XdgLoginItem::status() const {
    if (!isProgramThere() || isInBuildTree()) {
        return LoginItemStatus::notFound;
    }
    QFile file(entryFile());
    if (!file.open(QIODevice::ReadOnly)) {
        return LoginItemStatus::notRegistered;
    }
    const DesktopEntry entry = DesktopEntry::parse(file.readAll());
    if (entry.value("Hidden") == "true" || entry.value("X-GNOME-Autostart-enabled") == "false") {
        return LoginItemStatus::requiresApproval;
    }
    return startsAProgram(entry) ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
}

/// The entry of another copy counts for as long as that copy is there; a desktop passes over one whose program is gone.
bool XdgLoginItem::startsAProgram(const DesktopEntry &entry) const {
    if (entry.value("Exec") == command()) {
        return true;
    }
    const QByteArray program = entry.value("TryExec");
    return m_flatpakId.isEmpty() &&
           (program.isEmpty() || !QStandardPaths::findExecutable(QString::fromUtf8(program)).isEmpty());
}

QString XdgLoginItem::registerItem() {
    if (const QString reason = whyNot(); !reason.isEmpty()) {
        return reason;
    }
    if (status() == LoginItemStatus::requiresApproval) {
        return QStringLiteral("the user has switched %1 off").arg(entryFile());
    }
    return write(true);
}

QString XdgLoginItem::setEnabledByUser(bool isEnabled) {
    if (const QString reason = whyNot(); !reason.isEmpty()) {
        return reason;
    }
    return write(isEnabled);
}

void XdgLoginItem::openSystemSettings() {
    if (openSettingsProgram(kSettingsPrograms)) {
        return;
    }
    // A desktop without such settings: the folder with the entry in it.
    QProcess::startDetached(QStringLiteral("xdg-open"), {m_autostartFolder});
}

QString XdgLoginItem::whyNot() const {
    if (!isProgramThere()) {
        return QStringLiteral("there is no program %1").arg(m_programFile);
    }
    if (isInBuildTree()) {
        return QStringLiteral("%1 is a development build, which is not started at login").arg(m_programFile);
    }
    return {};
}

QByteArray XdgLoginItem::command() const {
    return m_flatpakId.isEmpty() ? desktopEntryCommand(m_programFile)
                                 : "flatpak run " + desktopEntryCommand(m_flatpakId);
}

QString XdgLoginItem::write(bool isEnabled) const {
    const QByteArray program = m_flatpakId.isEmpty() ? desktopEntryString(m_programFile) : QByteArrayLiteral("flatpak");
    const QByteArray entry =
        "[Desktop Entry]\n"
        "Type=Application\n"
        "Name=Tallowby\n"
        "Icon=org.tallowby.Tallowby\n"
        "TryExec=" +
        program +
        "\n"
        "Exec=" +
        command() +
        "\n"
        "Terminal=false\n"
        "NoDisplay=true\n" +
        // Desktops go by the one or the other.
        (isEnabled ? "X-GNOME-Autostart-enabled=true\n" : "X-GNOME-Autostart-enabled=false\nHidden=true\n");
    QDir().mkpath(m_autostartFolder);
    QSaveFile file(entryFile());
    if (!file.open(QIODevice::WriteOnly) || file.write(entry) != entry.size() || !file.commit()) {
        return QStringLiteral("cannot write %1: %2").arg(entryFile(), file.errorString());
    }
    return {};
}

QString XdgLoginItem::entryFile() const {
    return m_autostartFolder + u'/' + kEntryName;
}

bool XdgLoginItem::isProgramThere() const {
    const QFileInfo program(m_programFile);
    return program.isAbsolute() && program.isFile() && program.isExecutable();
}

bool XdgLoginItem::isInBuildTree() const {
    QDir folder = QFileInfo(m_programFile).absoluteDir();
    do {
        if (folder.exists(QStringLiteral("CMakeCache.txt"))) {
            return true;
        }
    } while (folder.cdUp());
    return false;
}

} // namespace tallowby
