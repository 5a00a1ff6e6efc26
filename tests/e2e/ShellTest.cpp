#include "e2e/Desk.h"
#include "e2e/Waiting.h"
#include "e2e/WindowList.h"
#include "support/bus/TrayHost.h"

#include <X11/keysym.h>

#include <QFile>

#include <memory>

namespace tallowby::test {

namespace {

const QString kSettingsWindow = QStringLiteral("Tallowby Settings");

} // namespace

class Shell : public Desk {
protected:
    [[nodiscard]] QString busAddress() { return environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")); }
    /// What the program keeps of the user's choices.
    [[nodiscard]] QByteArray stored() {
        QFile file(environment().value(QStringLiteral("XDG_CONFIG_HOME")) + QStringLiteral("/Tallowby/Tallowby.conf"));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    [[nodiscard]] bool becomesStored(const QByteArray &line) {
        const QByteArray whole = '\n' + line + '\n';
        return eventually([&] { return stored().contains(whole); });
    }
    void openSettings() {
        ASSERT_EQ(command(QStringLiteral("--settings")), 0);
        ASSERT_TRUE(eventually([this] { return windows.isActive(kSettingsWindow); }));
    }
    void tab(int times) {
        for (int i = 0; i < times; ++i) {
            keyboard.tap(XK_Tab);
        }
    }

    WindowList windows{session.display()};
};

TEST_F(Shell, TheTrayMenuIsThereWheneverTheTrayComesAndDoesWhatItSays) {
    startProgram();
    auto tray = std::make_unique<TrayHost>(busAddress());
    ASSERT_TRUE(eventually([&] { return tray->items().size() == 1; })) << "a tray that comes after the program";
    tray.reset();
    tray = std::make_unique<TrayHost>(busAddress());
    ASSERT_TRUE(eventually([&] { return tray->items().size() == 1; })) << "a tray that comes back";

    const QString item = tray->items().first();
    std::string rows;
    for (const TrayMenuRow &row : tray->menu(item)) {
        rows += row.isSeparator ? "-\n" : row.label.toStdString() + " (" + row.shortcut.toStdString() + ")\n";
    }
    EXPECT_EQ(rows, "Settings… (Control+,)\nSend Feedback… ()\n-\nCheck for Updates… ()\n-\nQuit (Control+Q)\n");

    ASSERT_TRUE(tray->click(item, QStringLiteral("Settings…")));
    EXPECT_TRUE(eventually([this] { return windows.isActive(kSettingsWindow); }));
    ASSERT_TRUE(tray->click(item, QStringLiteral("Send Feedback…")));
    EXPECT_TRUE(eventually([this] { return windows.isActive(QStringLiteral("Tallowby Feedback")); }));
    tray->activate(item);
    EXPECT_TRUE(program().says(u"[FlipSceneView] 📖 Flip complete. isOpen: true"));
    ASSERT_TRUE(tray->click(item, QStringLiteral("Quit")));
    EXPECT_EQ(program().exitCode(), 0);
    EXPECT_TRUE(program().says(u"[AppDelegate] 👋 Tallowby Ghost App terminating"));
}

TEST_F(Shell, TheFirstStartLeadsToAKeyThatTurnsTheScreenAndToAFirstNote) {
    const QString introduction = QStringLiteral("Welcome to Tallowby");
    setKept({});
    other.grabAltSpace();
    startProgram();
    ASSERT_TRUE(program().hasSaid(u"[HotkeyListener] ❌ Failed to register hotkey (status 10)"));
    ASSERT_TRUE(eventually([&] { return windows.isActive(introduction); }));
    tab(1); // To the first key that it offers.
    keyboard.tap(XK_space);
    ASSERT_TRUE(program().says(u"[HotkeyListener] ✅ Registered Global Hotkey: ⌃⌥Space"));
    const auto pressKeys = [this] {
        keyboard.press(XK_Control_L);
        keyboard.chord(XK_Alt_L, XK_space);
        keyboard.release(XK_Control_L);
    };
    pressKeys();
    ASSERT_TRUE(program().says(u"[FlipSceneView] 📖 Flip complete. isOpen: true"));
    keyboard.type(u"first");
    ASSERT_TRUE(notesBecome({QStringLiteral("first")}));
    pressKeys();
    ASSERT_TRUE(eventually([&] { return windows.isActive(introduction); }));
    keyboard.tap(XK_Escape);
    ASSERT_TRUE(eventually([&] { return !windows.has(introduction); }));
    endProgram();

    startProgram();
    EXPECT_FALSE(windows.has(introduction));
}

TEST_F(Shell, WhatIsChosenInTheSettingsHoldsAtOnceAndAfterARestart) {
    environment().remove(QStringLiteral("TALLOWBY_THEME"));
    startProgram();
    openSettings();
    const auto ground = [this] {
        const QRect frame = windows.frame(kSettingsWindow);
        return frame.isEmpty() ? -1 : qGray(picture(QRect(frame.topLeft() + QPoint(12, 12), QSize(1, 1))).pixel(0, 0));
    };
    ASSERT_TRUE(eventually([&] { return ground() > 200; }));

    tab(1);
    keyboard.tap(XK_space);
    keyboard.chord(XK_Control_L, XK_q); // Recorded, and not obeyed.
    ASSERT_TRUE(becomesStored("Settings.hotkeyModifiers=4096"));
    ASSERT_TRUE(becomesStored("Settings.hotkeyKeyCode=12"));
    tab(2); // Past the main display, to the only one by its name.
    keyboard.tap(XK_space);
    EXPECT_TRUE(eventually([this] { return stored().contains("\nSettings.selectedDisplayID="); }));
    tab(3); // Past System and Light.
    keyboard.tap(XK_space);
    ASSERT_TRUE(becomesStored("Settings.appearance=dark"));
    EXPECT_TRUE(eventually([&] { return ground() < 80; }));
    tab(1);
    keyboard.tap(XK_space);
    ASSERT_TRUE(becomesStored("Settings.reducesMotion=true"));
    keyboard.tap(XK_Escape);
    ASSERT_TRUE(eventually([this] { return !windows.has(kSettingsWindow); }));
    endProgram();

    const QByteArray kept = stored();
    startProgram();
    EXPECT_TRUE(program().hasSaid(u"[HotkeyListener] ✅ Registered Global Hotkey: ⌃Q"));
    openSettings();
    EXPECT_TRUE(eventually([&] { return ground() >= 0 && ground() < 80; }));
    EXPECT_EQ(stored(), kept);
}

TEST_F(Shell, SettingsThatAreAskedForOverTheCanvasWaitForTheDesktop) {
    startProgram();
    openCanvas();
    keyboard.chord(XK_Control_L, XK_comma);
    EXPECT_TRUE(program().says(u"[FlipEngine] ✅ Flip closed, desktop restored. (Window persisted)"));
    EXPECT_TRUE(eventually([this] { return windows.isActive(kSettingsWindow); }));
}

} // namespace tallowby::test
