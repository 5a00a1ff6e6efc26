#include "platform/VirtualKey.h"
#include "platform/linux/gstreamer/GstVideo.h"
#include "platform/linux/portal/PortalHotKeyService.h"
#include "support/VirtualScheduler.h"
#include "support/WaitUntil.h"
#include "support/XSession.h"
#include "support/bus/ShortcutsDesk.h"

#include <gtest/gtest.h>

#include <QGuiApplication>

#include <memory>
#include <vector>

namespace tallowby {
namespace {

using test::ShortcutsDesk;
using namespace std::chrono_literals;

class PortalHotKey : public testing::Test {
protected:
    PortalHotKey() { QGuiApplication::setDesktopFileName(QStringLiteral("org.tallowby.Tallowby")); }

    void startDesk(const ShortcutsDesk::Script &script = {}, ShortcutsDesk::Role role = ShortcutsDesk::Role::portal) {
        const QString address =
            test::XSession::adopted().environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        desk = std::make_unique<ShortcutsDesk>(address, role, script);
    }
    void startService() {
        service = std::make_unique<PortalHotKeyService>(scheduler,
                                                        [this](const QByteArray &token) { tokens.push_back(token); });
        EXPECT_EQ(service->installHandler([this] { ++presses; }), 0);
        service->installDecisionHandler([this](std::int32_t status) { decisions.push_back(status); });
    }
    /// Asks for Alt+Space; what the desktop decided.
    std::int32_t ask() {
        const std::size_t before = decisions.size();
        registration.reset();
        HotKeyResult result = service->registerHotKey(keycode::kSpace, carbon::optionKey, {});
        EXPECT_EQ(result.status, kHotKeyUndecided);
        registration = std::move(result.registration);
        EXPECT_TRUE(test::waitUntil([&] { return decisions.size() > before; }));
        return decisions.empty() ? kHotKeyUndecided : decisions.back();
    }
    [[nodiscard]] bool pressesBecome(int count) {
        return test::waitUntil([&] { return presses == count; });
    }
    /// Lets everything that was sent before this come in.
    void awaitChange(const QString &keys) {
        desk->giveOtherKeys(keys);
        EXPECT_TRUE(test::waitUntil([&] { return service->assignedKeys() == keys.simplified(); }));
    }

    test::VirtualScheduler scheduler;
    std::unique_ptr<ShortcutsDesk> desk;
    std::unique_ptr<PortalHotKeyService> service;
    std::unique_ptr<HotKeyRegistration> registration;
    std::vector<std::int32_t> decisions;
    std::vector<QByteArray> tokens;
    int presses = 0;
};

TEST_F(PortalHotKey, IsAskedForUnderTheProgramsNameAndPressed) {
    startDesk();
    startService();
    ASSERT_TRUE(service->isAvailable());
    EXPECT_EQ(ask(), 0);
    EXPECT_EQ(service->assignedKeys(), QStringLiteral("Alt+Space"));
    EXPECT_EQ(desk->calls(),
              (QStringList{QStringLiteral("Register org.tallowby.Tallowby"), QStringLiteral("CreateSession"),
                           QStringLiteral("BindShortcuts toggle ALT+space")}));

    desk->press(QStringLiteral("a token"));
    EXPECT_TRUE(pressesBecome(1));
    EXPECT_EQ(tokens, std::vector<QByteArray>{"a token"});
    for (int repeat = 0; repeat < 3; ++repeat) {
        scheduler.advance(500ms);
        desk->press();
        awaitChange(QStringLiteral("held %1").arg(repeat));
    }
    EXPECT_EQ(presses, 1) << "a key that is held down";
    desk->release();
    desk->press();
    EXPECT_TRUE(pressesBecome(2)) << "let go and pressed again, however soon";
    scheduler.advance(PortalHotKeyService::kRepeatWindow);
    desk->press();
    EXPECT_TRUE(pressesBecome(3)) << "a desktop that never tells of a release";

    scheduler.advance(10s);
    desk->press(desk->session(), QStringLiteral("another shortcut"));
    desk->press(desk->session() + u'0', QStringLiteral("toggle"));
    awaitChange(QStringLiteral("Super+T\n\tand more"));
    EXPECT_EQ(presses, 3);
    EXPECT_EQ(decisions.back(), 0);

    registration.reset();
    EXPECT_TRUE(test::waitUntil([&] { return desk->calls().last() == u"Close"; }));
    EXPECT_EQ(service->assignedKeys(), QString());
}

TEST_F(PortalHotKey, IsAskedForInANewSessionAfterEveryNo) {
    startDesk({.status = 1});
    startService();
    EXPECT_EQ(ask(), 1);
    const QString refused = desk->session();
    desk->press();
    desk->setStatus(2);
    EXPECT_EQ(ask(), 2);
    desk->setStatus(0);
    EXPECT_EQ(ask(), 0);
    EXPECT_NE(desk->session(), refused);
    EXPECT_EQ(presses, 0) << "nothing was bound when it was pressed";
    EXPECT_EQ(desk->calls().count(QStringLiteral("Close")), 2);

    desk->endSession();
    EXPECT_TRUE(test::waitUntil([&] { return decisions.back() == PortalHotKeyService::kTakenBack; }));
    EXPECT_EQ(service->assignedKeys(), QString());
    EXPECT_EQ(ask(), 0);
}

TEST_F(PortalHotKey, IsNotHadFromAPortalThatBindsSomethingElse) {
    startDesk({.isBound = false});
    startService();
    EXPECT_EQ(ask(), PortalHotKeyService::kNotBound);
}

TEST_F(PortalHotKey, IsNotHadWithoutAPortalThatGivesKeys) {
    startService();
    EXPECT_FALSE(service->isAvailable());
    EXPECT_EQ(service->registerHotKey(keycode::kSpace, carbon::optionKey, {}).status, PortalHotKeyService::kNoPortal);
    startDesk({.version = 0});
    startService();
    EXPECT_FALSE(service->isAvailable());
    EXPECT_EQ(service->registerHotKey(keycode::kSpace, carbon::optionKey, {}).status, PortalHotKeyService::kNoPortal);
}

TEST_F(PortalHotKey, IsAskedForAgainWhenThePortalComesBack) {
    startDesk();
    startService();
    EXPECT_EQ(ask(), 0);
    desk.reset();
    EXPECT_TRUE(test::waitUntil([&] { return decisions.back() == kHotKeyUndecided; }));
    EXPECT_EQ(service->assignedKeys(), QString());

    startDesk({.keys = QStringLiteral("Super+Space")});
    EXPECT_TRUE(test::waitUntil([&] { return decisions.back() == 0; }));
    EXPECT_EQ(service->assignedKeys(), QStringLiteral("Super+Space"));
    EXPECT_EQ(desk->calls().first(), QStringLiteral("Register org.tallowby.Tallowby"));
    desk->press();
    EXPECT_TRUE(pressesBecome(1));

    desk.reset();
    startDesk({.version = 0});
    EXPECT_TRUE(test::waitUntil([&] { return decisions.back() == PortalHotKeyService::kNoPortal; }));
}

TEST_F(PortalHotKey, ComesThroughTheSystemsOwnPortal) {
    startDesk({}, ShortcutsDesk::Role::backend);
    test::RealPortal portal(test::XSession::adopted().environment());
    ASSERT_TRUE(test::waitUntil([this] {
        startService();
        return service->isAvailable();
    }));
    EXPECT_EQ(ask(), 0);
    EXPECT_EQ(service->assignedKeys(), QStringLiteral("Alt+Space"));
    EXPECT_TRUE(desk->calls().contains(QStringLiteral("BindShortcuts toggle ALT+space")));
    desk->press();
    EXPECT_TRUE(pressesBecome(1));
    desk->release();
    desk->press();
    EXPECT_TRUE(pressesBecome(2));
    awaitChange(QStringLiteral("Super+T"));

    desk->setStatus(1);
    EXPECT_EQ(ask(), 1);
    desk->setStatus(0);
    EXPECT_EQ(ask(), 0);
    portal.end();
    EXPECT_TRUE(test::waitUntil([&] { return decisions.back() == kHotKeyUndecided; }));
}

TEST_F(PortalHotKey, ASandboxedProgramAsksForTheCameraOnceItHasAnAnswer) {
    qputenv("FLATPAK_ID", "org.tallowby.Tallowby");
    GstVideo video;
    qunsetenv("FLATPAK_ID");
    EXPECT_EQ(video.cameraAccess(), CameraAccess::notDetermined);
    const auto request = [&video] {
        std::optional<bool> answer;
        video.requestCameraAccess([&answer](bool isGranted) { answer = isGranted; });
        EXPECT_TRUE(test::waitUntil([&answer] { return answer.has_value(); }));
        return answer;
    };
    EXPECT_EQ(request(), false) << "there is no portal yet";
    EXPECT_EQ(video.cameraAccess(), CameraAccess::notDetermined);
    startDesk({.status = 1});
    EXPECT_EQ(request(), false);
    EXPECT_EQ(video.cameraAccess(), CameraAccess::denied);
    desk->setStatus(0);
    EXPECT_EQ(request(), false) << "the answer holds for the run";
    EXPECT_EQ(desk->calls(), QStringList{QStringLiteral("AccessCamera")});
}

TEST(PortalTrigger, NamesKeysAsXkbcommonDoes) {
    using namespace carbon;
    EXPECT_EQ(portalTrigger(keycode::kSpace, optionKey), QStringLiteral("ALT+space"));
    EXPECT_EQ(portalTrigger(40, controlKey | optionKey | shiftKey | cmdKey), QStringLiteral("CTRL+ALT+SHIFT+LOGO+k"));
    EXPECT_EQ(portalTrigger(111, cmdKey), QStringLiteral("LOGO+F12"));
    EXPECT_EQ(portalTrigger(50, cmdKey), QStringLiteral("LOGO+grave"));
    EXPECT_EQ(portalTrigger(4000, cmdKey), QString());
}

} // namespace
} // namespace tallowby
