#include "platform/AppEvents.h"
#include "platform/AppSettings.h"
#include "platform/NotificationCenter.h"
#include "platform/UserMotionPreference.h"
#include "support/FakeDesktop.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QFile>

namespace tallowby {

namespace {

class FixedDisplays final : public Displays {
public:
    [[nodiscard]] std::vector<Display> all() const override { return displays; }

    std::vector<Display> displays{{7, u"DP-1"_qs, {}, 1.0, false}, {8, u"HDMI-1"_qs, {}, 1.0, true}};
};

class SettingsTest : public testing::Test {
protected:
    [[nodiscard]] QByteArray storedText() const {
        QFile file(fileName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void store(const QByteArray &text) const {
        QFile file(fileName);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    test::TemporaryFolder folder;
    QString fileName = folder.file(u"Tallowby.conf"_qs);
    NotificationCenter center;
    FixedDisplays displays;
};

TEST_F(SettingsTest, DefaultsKeepKeysVerbatimAndPrivateOnDisk) {
    {
        UserDefaults defaults(fileName);
        EXPECT_FALSE(defaults.contains(u"tallowby.hasSeenCanvasTutorial"_qs));
        EXPECT_FALSE(defaults.boolean(u"tallowby.hasSeenCanvasTutorial"_qs));
        defaults.setBoolean(u"tallowby.hasSeenCanvasTutorial"_qs, true);
        defaults.setInteger(u"Settings.hotkeyKeyCode"_qs, 4'294'967'295);
        defaults.setString(u"lastSeenAppVersion"_qs, u"1.0, \"beta\" é"_qs);
        defaults.setString(u"word"_qs, u"twelve"_qs);
    }
    EXPECT_TRUE(storedText().contains("\ntallowby.hasSeenCanvasTutorial=true\n")) << storedText().constData();
    EXPECT_EQ(QFile::permissions(fileName) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    UserDefaults again(fileName);
    EXPECT_TRUE(again.boolean(u"tallowby.hasSeenCanvasTutorial"_qs));
    EXPECT_EQ(again.integer(u"Settings.hotkeyKeyCode"_qs), 4'294'967'295);
    EXPECT_EQ(again.string(u"lastSeenAppVersion"_qs), u"1.0, \"beta\" é");
    EXPECT_EQ(again.integer(u"word"_qs), std::nullopt);
    again.remove(u"word"_qs);
    EXPECT_FALSE(storedText().contains("word"));
}

TEST_F(SettingsTest, HotKeyIsAltSpaceUntilChosenAndEveryWriteIsAnnounced) {
    UserDefaults defaults(fileName);
    AppSettings settings(defaults, center, displays);
    EXPECT_EQ(settings.hotkeyKeyCode(), 49U);
    EXPECT_EQ(settings.hotkeyModifiers(), 2048U);
    EXPECT_FALSE(defaults.contains(u"Settings.hotkeyModifiers"_qs));

    std::vector<std::int64_t> storedAtPost;
    const auto observation = center.observe(events::tallowbyHotkeyChanged, [&](const Notification &) {
        storedAtPost.push_back(defaults.integer(u"Settings.hotkeyModifiers"_qs).value_or(-1));
    });
    int changes = 0;
    QObject::connect(&settings, &AppSettings::hotkeyModifiersChanged, [&] { ++changes; });
    settings.setHotkeyModifiers(2048);
    EXPECT_EQ(storedAtPost, std::vector<std::int64_t>{2048}) << "the same value is stored and announced as well";
    EXPECT_EQ(changes, 0);
    settings.setHotkeyModifiers(0x1a00);
    settings.setHotkeyKeyCode(0);
    EXPECT_EQ(storedAtPost, (std::vector<std::int64_t>{2048, 0x1a00, 0x1a00}));
    EXPECT_EQ(changes, 1);

    const AppSettings nextStart(defaults, center, displays);
    EXPECT_EQ(nextStart.hotkeyKeyCode(), 0U);
    EXPECT_EQ(nextStart.hotkeyModifiers(), 0x1a00U);
}

TEST_F(SettingsTest, TurnsOverTheChosenDisplayWhileItIsConnected) {
    UserDefaults defaults(fileName);
    AppSettings settings(defaults, center, displays);
    EXPECT_EQ(settings.resolvedScreen()->id, 8U);
    settings.setSelectedDisplayID(7);
    EXPECT_EQ(settings.resolvedScreen()->id, 7U);
    EXPECT_EQ(AppSettings(defaults, center, displays).selectedDisplayID(), 7U);
    displays.displays.erase(displays.displays.begin());
    EXPECT_EQ(settings.resolvedScreen()->id, 8U);
    displays.displays.clear();
    EXPECT_FALSE(settings.resolvedScreen());
    settings.setSelectedDisplayID(std::nullopt);
    EXPECT_FALSE(storedText().contains("selectedDisplayID"));
}

using SettingsDeathTest = SettingsTest;

TEST_F(SettingsDeathTest, ANumberThatIsNoneOfTheirsEndsTheProgramInOneLine) {
    for (const QByteArray &value : {QByteArray("-1"), QByteArray("4294967296"), QByteArray("1.5"),
                                    QByteArray("99999999999999999999"), QByteArray("space")}) {
        store("[General]\nSettings.hotkeyKeyCode=" + value + "\n");
        EXPECT_DEATH(
            {
                UserDefaults defaults(fileName);
                const AppSettings settings(defaults, center, displays);
            },
            "The setting Settings.hotkeyKeyCode in .*Tallowby.conf is not a whole number")
            << value.constData();
    }
}

TEST_F(SettingsTest, LooksAndMotionAreTheDesktopsUntilChosen) {
    test::FakeMotionPreference desktop;
    {
        UserDefaults defaults(fileName);
        AppSettings settings(defaults, center, displays);
        const UserMotionPreference motion(settings, desktop);
        EXPECT_EQ(settings.appearance(), Appearance::system);
        EXPECT_FALSE(motion.prefersReducedMotion());
        desktop.isReduced = true;
        EXPECT_TRUE(motion.prefersReducedMotion());
        settings.setAppearance(Appearance::dark);
        settings.setReducesMotion(true);
    }
    desktop.isReduced = false;
    UserDefaults defaults(fileName);
    const AppSettings nextStart(defaults, center, displays);
    EXPECT_EQ(nextStart.appearance(), Appearance::dark);
    EXPECT_TRUE(UserMotionPreference(nextStart, desktop).prefersReducedMotion());

    store("[General]\nSettings.appearance=sepia\nSettings.reducesMotion=perhaps\n");
    UserDefaults odd(fileName);
    EXPECT_EQ(AppSettings(odd, center, displays).appearance(), Appearance::system);
}

} // namespace

} // namespace tallowby
