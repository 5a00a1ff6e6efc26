#include "platform/linux/DBusScreenLock.h"
#include "support/WaitUntil.h"
#include "support/XSession.h"

#include <gtest/gtest.h>

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>

#include <memory>

namespace tallowby {
namespace {

const QString kLoginService = QStringLiteral("org.freedesktop.login1");
const QString kSessionPath = QStringLiteral("/org/freedesktop/login1/session/_31");

/// Login manager and screen saver, which sit on one bus here.
class Curtains : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    explicit Curtains(const QString &name)
        : m_bus(QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), name)) {}
    ~Curtains() override {
        const QString name = m_bus.name();
        m_bus = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(name);
    }

    [[nodiscard]] bool manageLogins() {
        return m_bus.registerObject(QStringLiteral("/org/freedesktop/login1"), this,
                                    QDBusConnection::ExportScriptableSlots) &&
               m_bus.registerService(kLoginService);
    }
    [[nodiscard]] bool wasAsked() const { return m_wasAsked; }

    void say(const QString &path, const QString &interface, const QString &signal, const QVariantList &arguments = {}) {
        QDBusMessage message = QDBusMessage::createSignal(path, interface, signal);
        message.setArguments(arguments);
        m_bus.send(message);
        // The bus takes one message after the other, so it has handed this one on when it answers.
        m_bus.interface()->serviceOwner(kLoginService);
    }
    void saver(bool isActive) {
        say(QStringLiteral("/org/xfce/ScreenSaver"), QStringLiteral("org.xfce.ScreenSaver"),
            QStringLiteral("ActiveChanged"), {isActive});
    }
    void session(const QString &signal) { say(kSessionPath, kLoginService + u".Session", signal); }
    void sleep(bool isBeginning) {
        say(QStringLiteral("/org/freedesktop/login1"), kLoginService + u".Manager", QStringLiteral("PrepareForSleep"),
            {isBeginning});
    }
    void lockedHint(bool isLocked) {
        say(kSessionPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"),
            {QString(kLoginService + u".Session"), QVariantMap{{QStringLiteral("LockedHint"), isLocked}},
             QStringList()});
    }

public Q_SLOTS:
    Q_SCRIPTABLE QDBusObjectPath GetSession(const QString &) {
        m_wasAsked = true;
        return QDBusObjectPath(kSessionPath);
    }

private:
    QDBusConnection m_bus;
    bool m_wasAsked = false;
};

class ScreenLockTest : public testing::Test {
protected:
    void SetUp() override {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
        desktop = std::make_unique<Curtains>(QStringLiteral("curtains"));
        ASSERT_TRUE(desktop->manageLogins());
        lock = std::make_unique<DBusScreenLock>();
        QObject::connect(lock.get(), &ScreenLock::drawn, [this] { ++times; });
        ASSERT_TRUE(test::waitUntil([this] { return desktop->wasAsked(); }));
        // Its rules reach the bus only after the answer.
        hear([this] { desktop->session(QStringLiteral("Lock")); });
        // Behind those that were said once too often.
        desktop->lockedHint(true);
        ASSERT_TRUE(becomes(true));
        desktop->lockedHint(false);
        ASSERT_TRUE(becomes(false));
        times = 0;
    }
    void TearDown() override { qunsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }

    /// Repeats what is said until it is heard once.
    void hear(const std::function<void()> &say) {
        ASSERT_TRUE(test::waitUntil([&] {
            say();
            return times > 0;
        }));
    }
    [[nodiscard]] testing::AssertionResult becomes(bool isDrawn) const {
        return test::waitUntil([&] { return lock->isDrawn() == isDrawn; })
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "drawn " << lock->isDrawn();
    }

    std::unique_ptr<Curtains> desktop;
    std::unique_ptr<DBusScreenLock> lock;
    int times = 0;
};

/// A locker under xss-lock never says that it has ended.
TEST_F(ScreenLockTest, ALockWithoutAnEndIsOverAtOnce) {
    hear([this] { desktop->session(QStringLiteral("Lock")); });
    EXPECT_FALSE(lock->isDrawn());
}

/// Whoever lets go too early lets the same curtain be drawn a second time.
TEST_F(ScreenLockTest, StaysDrawnUntilEachThatDrewItLetsGo) {
    desktop->sleep(true);
    desktop->lockedHint(true);
    desktop->session(QStringLiteral("Lock"));
    desktop->sleep(false);
    desktop->sleep(true);
    desktop->sleep(false);
    ASSERT_TRUE(becomes(true));
    desktop->lockedHint(false);
    ASSERT_TRUE(becomes(false));
    EXPECT_EQ(times, 1);

    auto other = std::make_unique<Curtains>(QStringLiteral("other"));
    other->saver(true);
    desktop->saver(true);
    desktop->saver(false);
    desktop->saver(true);
    desktop->saver(false);
    ASSERT_TRUE(becomes(true));
    other.reset();
    EXPECT_TRUE(becomes(false)) << "the screen saver has died";
    EXPECT_EQ(times, 2);
}

} // namespace
} // namespace tallowby

#include "ScreenLockTest.moc"
