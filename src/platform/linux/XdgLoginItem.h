#pragma once

#include "platform/desktop/LoginItem.h"

namespace tallowby {

class DesktopEntry;

/// The program's entry among the desktop's autostart entries (XDG Autostart, freedesktop.org). A user who switches it
/// off leaves the entry with a mark in it, which is taken away only by the user's own choice.
///
/// A program that lies in a build tree is reported as not found: it may be gone, moved or broken at the next login, and
/// a developer's every start would put it before the installed one.
class XdgLoginItem final : public LoginItem {
public:
    /// This program, in the user's own autostart folder.
    XdgLoginItem();
    /// In a Flatpak sandbox the desktop knows the program only by the sandbox's name.
    XdgLoginItem(const QString &programFile, const QString &autostartFolder, const QString &flatpakId = {});

    [[nodiscard]] LoginItemStatus status() const override;
    [[nodiscard]] QString registerItem() override;
    [[nodiscard]] QString setEnabledByUser(bool isEnabled) override;
    void openSystemSettings() override;

    [[nodiscard]] QString entryFile() const;

private:
    /// Empty when a login could start the program, else why not.
    [[nodiscard]] QString whyNot() const;
    [[nodiscard]] bool startsAProgram(const DesktopEntry &entry) const;
    [[nodiscard]] QByteArray command() const;
    [[nodiscard]] QString write(bool isEnabled) const;
    [[nodiscard]] bool isProgramThere() const;
    [[nodiscard]] bool isInBuildTree() const;

    QString m_programFile;
    QString m_autostartFolder;
    QString m_flatpakId;
};

} // namespace tallowby
