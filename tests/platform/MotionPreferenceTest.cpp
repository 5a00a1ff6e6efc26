#include "platform/linux/DesktopMotionPreference.h"

#include "platform/linux/SessionBus.h"
#include "platform/linux/x11/XSettings.h"
#include "platform/linux/x11/XcbConnection.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QDBusMessage>

namespace tallowby {

namespace {

using test::waitUntil;

QByteArray number32(std::uint32_t number) {
    QByteArray bytes;
    for (int shift = 0; shift < 32; shift += 8) {
        bytes += char(number >> shift);
    }
    return bytes;
}

QByteArray setting(char type, const QByteArray &name, const QByteArray &value) {
    const QByteArray padding((4 - name.size() % 4) % 4, '\0');
    return QByteArray(1, type) + '\0' + char(name.size()) + '\0' + name + padding + number32(7) + value;
}

/// The property of a desktop whose animations are on or off.
QByteArray xsettings(std::int32_t animations) {
    return QByteArray(4, '\0') + number32(1) + number32(3) +
           setting(1, "Net/ThemeName", number32(5) + QByteArray("Paper\0\0\0", 8)) +
           setting(2, "Gtk/Color", QByteArray(8, 'c')) +
           setting(0, "Gtk/EnableAnimations", number32(std::uint32_t(animations)));
}

/// Stands in for xdg-desktop-portal.
class Portal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit Portal(QDBusConnection bus)
        : m_bus(bus) {
        m_bus.registerObject(u"/org/freedesktop/portal/desktop"_qs, this, QDBusConnection::ExportScriptableContents);
        m_bus.registerService(u"org.freedesktop.portal.Desktop"_qs);
    }
    Q_SCRIPTABLE QDBusVariant Read(const QString &nameSpace, const QString &key) {
        asked = nameSpace + u' ' + key;
        return QDBusVariant(QVariant::fromValue(QDBusVariant(false)));
    }
    void announce(const QString &key, const QVariant &value) {
        auto message = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_qs,
                                                  u"org.freedesktop.portal.Settings"_qs, u"SettingChanged"_qs);
        message << u"org.gnome.desktop.interface"_qs << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(message);
    }

    QString asked;

private:
    QDBusConnection m_bus;
};

TEST(XSettings, FindsANumberAmongOthersAndSurvivesAnyBytes) {
    const QByteArray property = xsettings(1);
    EXPECT_EQ(xsettingsInteger(property, "Gtk/EnableAnimations"), 1);
    EXPECT_EQ(xsettingsInteger(property, "Net/ThemeName"), std::nullopt);
    EXPECT_EQ(xsettingsInteger(property, "Gtk/Other"), std::nullopt);

    for (qsizetype length = 0; length < property.size(); ++length) {
        EXPECT_EQ(xsettingsInteger(property.first(length), "Gtk/EnableAnimations"), std::nullopt) << length;
    }
    for (qsizetype place = 0; place < property.size(); ++place) {
        QByteArray hostile = property;
        hostile[place] = char(0xff);
        (void) xsettingsInteger(hostile, "Gtk/EnableAnimations"); // Sanitizers look on.
    }
    const QByteArray endless = QByteArray(4, '\0') + number32(1) + number32(0xffffffff) +
                               setting(1, "A", number32(0xfffffffd)) + setting(0, "Gtk/EnableAnimations", number32(0));
    EXPECT_EQ(xsettingsInteger(endless, "Gtk/EnableAnimations"), std::nullopt);
}

TEST(MotionPreference, FollowsTheDesktopsSettings) {
    XcbConnection x11;
    const DesktopMotionPreference preference(x11);
    EXPECT_FALSE(preference.prefersReducedMotion());

    XcbConnection manager;
    const xcb_window_t window = xcb_generate_id(manager.handle());
    xcb_create_window(manager.handle(), 0, window, manager.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(manager.handle(), window, manager.atom("_XSETTINGS_S0"), XCB_CURRENT_TIME);
    for (const int animations : {0, 1}) {
        const QByteArray property = xsettings(animations);
        xcb_change_property(manager.handle(), XCB_PROP_MODE_REPLACE, window, manager.atom("_XSETTINGS_SETTINGS"),
                            manager.atom("_XSETTINGS_SETTINGS"), 8, std::uint32_t(property.size()),
                            property.constData());
        (void) manager.serverTime(); // A round trip.
        EXPECT_EQ(preference.prefersReducedMotion(), animations == 0);
    }

    qputenv("TALLOWBY_REDUCED_MOTION", "1");
    EXPECT_TRUE(preference.prefersReducedMotion());
    qunsetenv("TALLOWBY_REDUCED_MOTION");
}

TEST(MotionPreference, FollowsThePortal) {
    Portal portal(connectToSessionBus());
    XcbConnection x11;
    const DesktopMotionPreference preference(x11);
    EXPECT_FALSE(preference.prefersReducedMotion()) << "start-up waits for nothing";
    EXPECT_TRUE(waitUntil([&] { return preference.prefersReducedMotion(); }));
    EXPECT_EQ(portal.asked, u"org.gnome.desktop.interface enable-animations");

    portal.announce(u"enable-animations"_qs, u"no boolean"_qs);
    portal.announce(u"cursor-blink"_qs, true);
    portal.announce(u"enable-animations"_qs, true);
    EXPECT_TRUE(waitUntil([&] { return !preference.prefersReducedMotion(); }));
}

} // namespace

} // namespace tallowby

#include "MotionPreferenceTest.moc"
