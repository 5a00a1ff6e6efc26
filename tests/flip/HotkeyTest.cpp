#include "flip/hotkey/HotkeyAdvisor.h"
#include "flip/hotkey/HotkeyFormatter.h"
#include "flip/hotkey/HotkeyListener.h"
#include "platform/AppEvents.h"
#include "platform/AppSettings.h"
#include "support/FakeDesktop.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

namespace tallowby {
namespace {

TEST(HotkeyFormatter, writesCombinationsAsPeopleReadThem) {
    struct Case {
        std::uint32_t keyCode;
        std::uint32_t modifiers;
        QString text;
    };
    const Case cases[] = {
        {49, 0x800, u"⌥Space"_qs}, {40, 0x300, u"⇧⌘K"_qs},  {0, 0x1A00, u"⌃⌥⇧A"_qs},
        {49, 0, u"Space"_qs},      {42, 0, u"\\"_qs},       {10, 0, u"Key 10"_qs},
        {0, 0x1F00, u"⌃⌥⇧⌘A"_qs},  {22, 0x100, u"⌘6"_qs},   {23, 0x100, u"⌘5"_qs},
        {126, 0x1000, u"⌃↑"_qs},   {111, 0x400, u"F12"_qs}, {4'000'000'000U, 0, u"Key 4000000000"_qs},
        {48, 0x200, u"⇧Tab"_qs},   {50, 0x800, u"⌥`"_qs},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(HotkeyFormatter::string(c.keyCode, c.modifiers), c.text);
    }
    EXPECT_EQ(HotkeyFormatter::keyCaps(0, 0x1F00).join(u' '), u"Ctrl Alt Shift Super A"_qs);
    int named = 0;
    for (std::uint32_t keyCode = 0; keyCode < 256; ++keyCode) {
        named += HotkeyFormatter::keyName(keyCode) != QStringLiteral("Key %1").arg(keyCode);
    }
    EXPECT_EQ(named, 68);
}

class Hotkey : public testing::Test {
protected:
    Hotkey()
        : m_presses(notifications.observe(events::flipToggleRequested, [this](const Notification &) { ++requests; })) {}

    test::LogCapture log;
    test::TemporaryFolder folder;
    UserDefaults defaults{folder.file(u"flip.conf"_qs)};
    NotificationCenter notifications;
    test::VirtualScheduler clock;
    test::FakeDesktop desktop;
    AppSettings settings{defaults, notifications, desktop.displayService};
    test::FakeHotKeyService &keyboard = desktop.hotKeyService;
    int requests = 0;

private:
    NotificationCenter::Observation m_presses;
};

TEST_F(Hotkey, asksForTheTurnAfterThePlatformsCallbackHasReturned) {
    HotkeyListener listener(notifications, settings, keyboard, clock);
    listener.start();
    listener.start();
    EXPECT_EQ(keyboard.lastID.signature, 0x5457464CU);
    EXPECT_EQ(keyboard.lastID.id, 1U);
    ASSERT_TRUE(keyboard.press(49, 0x800));
    EXPECT_EQ(requests, 0);
    clock.advance({});
    EXPECT_EQ(requests, 1);
    listener.stop();
    listener.stop();
    EXPECT_FALSE(keyboard.press(49, 0x800));
    EXPECT_EQ(log.lines(), (QStringList{u"[HotkeyListener] 🎹 Initialized (Carbon API)"_qs,
                                        u"[HotkeyListener] ✅ Registered Global Hotkey: ⌥Space"_qs,
                                        u"[HotkeyListener] 🛑 Stopped listening"_qs}));
}

TEST_F(Hotkey, followsTheSettingsAndRetriesATakenCombinationAtTheNextChange) {
    HotkeyListener listener(notifications, settings, keyboard, clock);
    listener.start();
    keyboard.taken = {{40, 0x800}};
    std::ignore = log.take();
    settings.setHotkeyKeyCode(40);
    EXPECT_TRUE(keyboard.held().empty()) << "the old combination must not stay";
    settings.setHotkeyModifiers(0x300);
    EXPECT_EQ(keyboard.held(), (std::set<test::FakeHotKeyService::Combination>{{40, 0x300}}));
    listener.stop();
    settings.setHotkeyKeyCode(49);
    EXPECT_TRUE(keyboard.held().empty());
    listener.start();
    EXPECT_EQ(log.lines(), (QStringList{u"[HotkeyListener] ❌ Failed to register hotkey (status -9878)"_qs,
                                        u"[HotkeyListener] ✅ Registered Global Hotkey: ⇧⌘K"_qs,
                                        u"[HotkeyListener] 🛑 Stopped listening"_qs,
                                        u"[HotkeyListener] ✅ Registered Global Hotkey: ⇧⌘Space"_qs}));
}

TEST_F(Hotkey, staysStoppedWithoutAHandlerAndLetsGoWhenItDies) {
    {
        HotkeyListener listener(notifications, settings, keyboard, clock);
        keyboard.handlerStatus = -50;
        listener.start();
        EXPECT_FALSE(listener.isRunning());
        EXPECT_TRUE(keyboard.held().empty());
        EXPECT_EQ(log.lines().last(), u"[HotkeyListener] ❌ Failed to install event handler: -50");
        keyboard.handlerStatus = 0;
        listener.start();
        ASSERT_TRUE(keyboard.press(49, 0x800));
    }
    EXPECT_TRUE(keyboard.held().empty());
    clock.advance(std::chrono::seconds(1));
    settings.setHotkeyKeyCode(1);
    EXPECT_EQ(requests, 0) << "a press that was on its way reached a listener that has gone";
}

TEST_F(Hotkey, adviceFollowsTheKeyThatIsStoredAndNotThePairInBetween) {
    // What stands between the old pair and the new one is free; both of them are not.
    keyboard.taken = {{49, 0x800}, {40, 0x1000}};
    HotkeyListener listener(notifications, settings, keyboard, clock);
    HotkeyAdvisor advisor(settings, keyboard, clock);
    listener.start();
    advisor.setListener(&listener);
    EXPECT_EQ(advisor.alternatives(),
              (QStringList{u"Ctrl + Alt + Space"_qs, u"Alt + Shift + Space"_qs, u"Alt + `"_qs}));

    settings.setHotkeyKeyCode(40);
    settings.setHotkeyModifiers(0x1000);
    clock.advance({});
    EXPECT_TRUE(advisor.problem().startsWith(u"Ctrl + K does not work")) << qPrintable(advisor.problem());
    EXPECT_EQ(advisor.alternatives(), (QStringList{u"Ctrl + Alt + K"_qs, u"Alt + Shift + K"_qs, u"Alt + `"_qs}));
    EXPECT_TRUE(keyboard.held().empty());
    advisor.choose(3);
    EXPECT_TRUE(keyboard.held().empty()) << "there is no such offer";

    keyboard.taken.clear(); // The other program has ended.
    advisor.tryAgain();
    clock.advance({});
    EXPECT_EQ(advisor.problem(), QString());
    EXPECT_EQ(keyboard.held(), (std::set<test::FakeHotKeyService::Combination>{{40, 0x1000}}));
}

TEST_F(Hotkey, waitsForADesktopThatGivesTheKeyItself) {
    keyboard.assigned.emplace();
    HotkeyListener listener(notifications, settings, keyboard, clock);
    HotkeyAdvisor advisor(settings, keyboard, clock);
    listener.start();
    advisor.setListener(&listener);
    EXPECT_TRUE(advisor.isAssigned() && advisor.isUndecided() && !listener.isRegistered());
    EXPECT_EQ(advisor.problem(), QString()) << "the user is still being asked";
    std::ignore = log.take();

    keyboard.decide(0, u"Meta + Space"_qs);
    keyboard.decide(0, u"Meta+T"_qs);
    EXPECT_TRUE(listener.isRegistered());
    EXPECT_EQ(advisor.assignedCaps(), (QStringList{u"Meta"_qs, u"T"_qs}));
    keyboard.decide(0, u"Press Super and T"_qs);
    EXPECT_EQ(advisor.assignedCaps(), QStringList{u"Press Super and T"_qs});
    EXPECT_EQ(advisor.combination(), u"Press Super and T"_qs);

    keyboard.decide(kHotKeyUndecided, {});
    EXPECT_FALSE(listener.isRegistered());
    keyboard.decide(1, {});
    clock.advance({});
    EXPECT_TRUE(keyboard.held().empty());
    EXPECT_TRUE(!advisor.problem().isEmpty() && advisor.alternatives().isEmpty());
    advisor.tryAgain();
    EXPECT_TRUE(keyboard.held().empty()) << "opening a window is no reason to ask the user";
    advisor.askDesktop();
    keyboard.decide(0, u"Meta+T"_qs);
    clock.advance({});
    EXPECT_EQ(advisor.problem(), QString());
    const QString registered = u"[HotkeyListener] ✅ Registered Global Hotkey: ⌥Space"_qs;
    EXPECT_EQ(log.lines(),
              (QStringList{registered, u"[HotkeyListener] ❌ Failed to register hotkey (status 1)"_qs, registered}));
}

} // namespace
} // namespace tallowby
