#include "platform/linux/XdgLoginItem.h"

#include "platform/linux/DesktopEntry.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

namespace tallowby {

namespace {

class LoginItemTest : public testing::Test {
protected:
    LoginItemTest() { makeProgram(program); }

    static void makeProgram(const QString &path, const QByteArray &text = "#!/bin/sh\n") {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    void writeEntry(const QByteArray &lines) const {
        QDir().mkpath(autostart);
        QFile file(item.entryFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(lines);
    }
    [[nodiscard]] QByteArray entry() const {
        QFile file(item.entryFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    test::TemporaryFolder folder;
    QString program = folder.file(u"tallowby"_qs);
    QString autostart = folder.file(u"config/autostart"_qs);
    XdgLoginItem item{program, autostart};
};

TEST_F(LoginItemTest, RegistersThisProgram) {
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(item.registerItem(), QString());
    EXPECT_EQ(item.status(), LoginItemStatus::enabled);
    EXPECT_TRUE(item.entryFile().endsWith(u"/autostart/org.tallowby.Tallowby.desktop"));
    EXPECT_TRUE(entry().startsWith("[Desktop Entry]\nType=Application\n")) << entry().constData();
    EXPECT_EQ(DesktopEntry::parse(entry()).value("Exec"), program.toUtf8());
    EXPECT_EQ(QDir(autostart).entryList(QDir::Files).size(), 1) << "a temporary file is left";
}

TEST_F(LoginItemTest, AnEntryCountsAsLongAsItStartsACopyOfTheProgram) {
    const QString other = folder.file(u"other"_qs);
    makeProgram(other);
    EXPECT_EQ(XdgLoginItem(other, autostart).registerItem(), QString());
    EXPECT_EQ(item.status(), LoginItemStatus::enabled);
    ASSERT_TRUE(QFile::remove(other));
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered) << "the other copy was removed";
    EXPECT_EQ(item.registerItem(), QString());
    EXPECT_EQ(DesktopEntry::parse(entry()).value("Exec"), program.toUtf8());
    writeEntry("[Desktop Entry]\nExec=wrapper\n");
    EXPECT_EQ(item.status(), LoginItemStatus::enabled) << "the user's own";
}

TEST_F(LoginItemTest, IsStartedByItsSandbox) {
    XdgLoginItem sandboxed(program, autostart, QStringLiteral("org.tallowby.Tallowby"));
    EXPECT_EQ(sandboxed.registerItem(), QString());
    EXPECT_EQ(DesktopEntry::parse(entry()).value("Exec"), "flatpak run org.tallowby.Tallowby");
    EXPECT_EQ(DesktopEntry::parse(entry()).value("TryExec"), "flatpak");
}

TEST_F(LoginItemTest, LeavesAnEntryAloneThatTheUserSwitchedOff) {
    for (const char *mark : {"Hidden=true", "X-GNOME-Autostart-enabled = false"}) {
        const QByteArray lines = QByteArray("# mine\n[Desktop Entry]\nExec=x\n") + mark + "\n[Other]\nHidden=false\n";
        writeEntry(lines);
        EXPECT_EQ(item.status(), LoginItemStatus::requiresApproval);
        EXPECT_NE(item.registerItem(), QString());
        EXPECT_EQ(entry(), lines);
    }
    writeEntry("[Desktop Entry]\nExec=x\nHidden=false\n[Other]\nHidden=true\n");
    EXPECT_EQ(item.status(), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, TheUsersOwnChoiceHoldsEitherWay) {
    EXPECT_EQ(item.setEnabledByUser(false), QString());
    EXPECT_EQ(item.status(), LoginItemStatus::requiresApproval);
    EXPECT_EQ(DesktopEntry::parse(entry()).value("Hidden"), "true") << "the mark that every desktop knows";
    EXPECT_NE(item.registerItem(), QString());
    EXPECT_EQ(item.setEnabledByUser(true), QString());
    EXPECT_EQ(item.status(), LoginItemStatus::enabled);
    EXPECT_EQ(DesktopEntry::parse(entry()).value("Exec"), program.toUtf8());
}

TEST_F(LoginItemTest, RefusesAProgramThatALoginCannotRelyOn) {
    XdgLoginItem absent(folder.file(u"absent"_qs), autostart);
    EXPECT_EQ(absent.status(), LoginItemStatus::notFound);
    EXPECT_NE(absent.registerItem(), QString());

    QDir().mkpath(folder.file(u"build/bin"_qs));
    makeProgram(folder.file(u"build/CMakeCache.txt"_qs));
    const QString built = folder.file(u"build/bin/tallowby"_qs);
    makeProgram(built);
    XdgLoginItem development(built, autostart);
    EXPECT_EQ(development.status(), LoginItemStatus::notFound);
    EXPECT_TRUE(development.registerItem().contains(u"development build"));
    EXPECT_FALSE(QFile::exists(item.entryFile()));
}

TEST_F(LoginItemTest, SaysWhyItCannotRegister) {
    makeProgram(folder.file(u"file"_qs));
    XdgLoginItem blocked(program, folder.file(u"file/autostart"_qs));
    EXPECT_TRUE(blocked.registerItem().contains(u"file/autostart/org.tallowby.Tallowby.desktop"));
}

TEST_F(LoginItemTest, OpensTheSettingsOfTheDesktopThatRuns) {
    // Two desktops are installed, one of them runs; the stand-ins write down how they were called.
    const QString calls = folder.file(u"calls"_qs);
    for (const QString &name : {u"systemsettings"_qs, u"xfce4-session-settings"_qs, u"xdg-open"_qs}) {
        makeProgram(folder.file(name), "#!/bin/sh\necho " + name.toUtf8() + " \"$@\" > " + calls.toUtf8() + ".part\n" +
                                           "/bin/mv " + calls.toUtf8() + ".part " + calls.toUtf8() + "\n");
    }
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", folder.path().toUtf8());
    for (const auto &[desktop, expected] :
         {std::pair(QByteArray("ubuntu:KDE"), QByteArray("systemsettings kcm_autostart\n")),
          std::pair(QByteArray("XFCE"), QByteArray("xfce4-session-settings\n")),
          std::pair(QByteArray("i3"), QByteArray("xdg-open " + autostart.toUtf8() + '\n'))}) {
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        item.openSystemSettings();
        QFile file(calls);
        EXPECT_TRUE(test::waitUntil([&] { return file.open(QIODevice::ReadOnly); })) << desktop.constData();
        EXPECT_EQ(file.readAll(), expected);
        file.remove();
    }
    qputenv("PATH", path);
    qunsetenv("XDG_CURRENT_DESKTOP");
}

TEST(DesktopEntry, WritesAnyPathAsACommand) {
    EXPECT_EQ(desktopEntryCommand(u"/usr/bin/tallowby"_qs), "/usr/bin/tallowby");
    EXPECT_EQ(desktopEntryCommand(u"/opt/my apps/100%/é"_qs), "\"/opt/my apps/100%%/é\"");
    EXPECT_EQ(desktopEntryCommand(u"/a\"b`c$d\\e"_qs), R"("/a\\"b\\`c\\$d\\\\e")");
    EXPECT_EQ(desktopEntryString(u"/a\\b\nc"_qs), "/a\\\\b\\nc");
}

} // namespace

} // namespace tallowby
