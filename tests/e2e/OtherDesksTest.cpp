#include "e2e/Desk.h"
#include "e2e/Waiting.h"
#include "e2e/WindowList.h"
#include "support/bus/ShortcutsDesk.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QProcess>

#include <X11/keysym.h>

namespace tallowby::test {

/// Desks that change under the program, or give it its key in another way.
class OtherDesks : public Desk {
protected:
    void runXrandr(const QStringList &arguments) {
        QProcess xrandr;
        xrandr.setProcessEnvironment(environment());
        xrandr.start(QStringLiteral("xrandr"), arguments);
        ASSERT_TRUE(xrandr.waitForFinished());
        ASSERT_EQ(xrandr.exitCode(), 0) << xrandr.readAllStandardError().constData();
    }
    /// Has the two halves of the screen count as displays of their own.
    void addDisplay() {
        const QString monitor = QStringLiteral("--setmonitor");
        runXrandr({monitor, QStringLiteral("Left"), QStringLiteral("640/160x800/200+0+0"), QStringLiteral("screen")});
        runXrandr({monitor, QStringLiteral("Right"), QStringLiteral("640/160x800/200+640+0"), QStringLiteral("none")});
    }
    void removeDisplay() {
        runXrandr({QStringLiteral("--delmonitor"), QStringLiteral("Right")});
        runXrandr({QStringLiteral("--delmonitor"), QStringLiteral("Left")});
    }
    [[nodiscard]] bool canvasCovers(const QRect &frame) {
        return eventually([&] { return windows.frame(QStringLiteral("Tallowby canvas")) == frame; });
    }
    static void rest(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

    WindowList windows{session.display()};
};

TEST_F(OtherDesks, AWindowThatTakesTheKeyboardForAMomentDoesNotCloseTheCanvas) {
    startProgram();
    openCanvas();
    {
        OtherApplication notice(session.display(), QByteArrayLiteral("Notice"));
        ASSERT_TRUE(eventually([&] {
            notice.takeKeyboard();
            return notice.hasFocus();
        }));
        rest(std::chrono::milliseconds(300));
    }
    rest(std::chrono::milliseconds(1500));
    EXPECT_FALSE(program().hasSaid(u"[FlipEngine] 🔙 Closing flip..."));
    pointer.click(kScreenCentre);
    keyboard.type(u"still here");
    EXPECT_TRUE(notesBecome({QStringLiteral("still here")}));
}

TEST_F(OtherDesks, AWindowThatKeepsTheKeyboardClosesTheCanvasAndHasItAfterwards) {
    startProgram();
    openCanvas();
    OtherApplication call(session.display(), QByteArrayLiteral("Call"));
    ASSERT_TRUE(eventually([&] {
        // Whoever works there goes on working there, whatever the canvas tries.
        call.takeKeyboard();
        return program().hasSaid(u"[FlipEngine] ✅ Flip closed, desktop restored. (Window persisted)");
    }));
    EXPECT_TRUE(eventually([&] { return call.hasFocus(); }));
    keyboard.type(u"hello");
    EXPECT_TRUE(eventually([&] { return call.typed() == u"hello"; }));
    EXPECT_EQ(other.typed(), QString());
}

TEST_F(OtherDesks, ADisplayThatComesOrGoesUnderTheCanvasIsCountedFromTheNextTurnOn) {
    startProgram();
    openCanvas();
    EXPECT_TRUE(canvasCovers(QRect(QPoint(), kScreenSize)));
    addDisplay();
    keyboard.type(u"one more");
    EXPECT_TRUE(notesBecome({QStringLiteral("one more")}));
    keyboard.tap(XK_Escape);
    closeCanvas();
    openCanvas();
    EXPECT_TRUE(canvasCovers(QRect(0, 0, 640, 800)));

    removeDisplay();
    pointer.moveTo(QPoint(200, 600));
    keyboard.type(u"one less");
    EXPECT_TRUE(notesBecome({QStringLiteral("one more"), QStringLiteral("one less")}));
    keyboard.tap(XK_Escape);
    closeCanvas();
    openCanvas();
    EXPECT_TRUE(canvasCovers(QRect(QPoint(), kScreenSize)));
}

TEST_F(OtherDesks, AScreenThatLocksFindsTheDesktopAgain) {
    const QDBusConnection bus = QDBusConnection::connectToBus(
        environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")), QStringLiteral("locker"));
    const auto tell = [&bus](bool isLocked) {
        QDBusMessage signal =
            QDBusMessage::createSignal(QStringLiteral("/ScreenSaver"), QStringLiteral("org.freedesktop.ScreenSaver"),
                                       QStringLiteral("ActiveChanged"));
        EXPECT_TRUE(bus.send(signal << isLocked));
    };
    startProgram();
    openCanvas();
    tell(true);
    EXPECT_TRUE(program().says(u"[FlipEngine] ✅ Flip closed, desktop restored. (Window persisted)"));
    EXPECT_TRUE(eventually([this] { return other.hasFocus(); }));
    tell(false);
    openCanvas();

    closeCanvas();
    pressHotKey();
    ASSERT_TRUE(program().says(u"[FlipWindow] 👁️ Shown on main screen"));
    tell(true);
    EXPECT_TRUE(program().says(u"[FlipEngine] ✅ Flip closed, desktop restored. (Window persisted)")) << "in mid-turn";
    QDBusConnection::disconnectFromBus(QStringLiteral("locker"));
}

TEST_F(OtherDesks, WithoutOpenGlThatWorksTheWindowsArePainted) {
    environment().insert(QStringLiteral("QT_XCB_GL_INTEGRATION"), QStringLiteral("none"));
    environment().insert(QStringLiteral("QSG_RHI_BACKEND"), QStringLiteral("opengl"));
    startProgram();
    openCanvas();
    keyboard.type(u"no OpenGL");
    EXPECT_TRUE(notesBecome({QStringLiteral("no OpenGL")}));
}

TEST_F(OtherDesks, OnAWaylandSessionTheKeyComesFromTheDesktopPortal) {
    const QString address = environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    ShortcutsDesk desk(address, ShortcutsDesk::Role::backend, {});
    const RealPortal portal(session.environment());
    const QDBusConnection bus = QDBusConnection::connectToBus(address, QStringLiteral("other-desks"));
    ASSERT_TRUE(eventually([&] {
        return bus.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.portal.Desktop")).value();
    }));

    environment().insert(QStringLiteral("XDG_SESSION_TYPE"), QStringLiteral("wayland"));
    startProgram();
    ASSERT_TRUE(
        eventually([this] { return program().hasSaid(u"[HotkeyListener] ✅ Registered Global Hotkey: ⌥Space"); }));
    keyboard.chord(XK_Alt_L, XK_space);
    desk.press();
    ASSERT_TRUE(program().says(u"[FlipSceneView] 📖 Flip complete. isOpen: true"));
    desk.release();
    keyboard.type(u"through the portal");
    EXPECT_TRUE(notesBecome({QStringLiteral("through the portal")}));
    desk.press();
    desk.release();
    EXPECT_TRUE(program().says(u"[FlipEngine] ✅ Flip closed, desktop restored. (Window persisted)"));
    EXPECT_TRUE(eventually([this] { return other.hasFocus(); }));
    endProgram();
    QDBusConnection::disconnectFromBus(QStringLiteral("other-desks"));
}

} // namespace tallowby::test
