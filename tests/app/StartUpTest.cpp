#include "app/AppDelegate.h"
#include "app/QmlTypes.h"
#include "app/feedback/FeedbackWindowController.h"
#include "app/onboarding/OnboardingWindowController.h"
#include "app/settings/SettingsWindowController.h"
#include "app/whatsnew/WhatsNewWindowController.h"
#include "flip/FlipEngine.h"
#include "platform/AppEvents.h"
#include "support/FakeDesktop.h"
#include "support/LogCapture.h"
#include "support/WaitUntil.h"
#include "support/WarningGuard.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QKeyEvent>
#include <QQuickWindow>

namespace tallowby {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

const QString kReady = QStringLiteral("[AppDelegate] ✅ Tallowby ready! Press ⌥ + Space to flip.");

/// The whole program on a desktop that does as the test says.
class StartUp : public testing::Test {
protected:
    StartUp() {
        registerQmlTypes();
        test::expectWarning(QStringLiteral("This plugin does not support")); // Windows that are not on any screen.
        QFile::remove(UserDefaults().fileName());
        desktop->loginItemService.currentStatus = LoginItemStatus::enabled;
    }

    void start() {
        delegate = std::make_unique<AppDelegate>([this](Scheduler &) { return std::move(owned); });
        delegate->applicationDidFinishLaunching();
    }
    [[nodiscard]] static bool isOpen(const WindowController *controller) {
        return controller && controller->window() && controller->window()->isVisible();
    }
    [[nodiscard]] std::vector<std::string> lines() const {
        std::vector<std::string> all;
        for (const QString &line : log.lines()) {
            all.push_back(line.toStdString());
        }
        return all;
    }

    test::LogCapture log;
    std::unique_ptr<test::FakeDesktop> owned = std::make_unique<test::FakeDesktop>();
    test::FakeDesktop *const desktop = owned.get();
    std::unique_ptr<AppDelegate> delegate;
};

TEST_F(StartUp, WithTheKeyToBeHadComesUpInOrderAndEndsInOrder) {
    start();
    delegate->applicationWillTerminate();
    EXPECT_THAT(
        lines(),
        ElementsAre(
            "[AppDelegate] 🚀 Tallowby Ghost App launched", "[PermissionManager] ✅ Accessibility: Granted",
            "[AppDelegate] 🎬 Initializing Tallowby components...", "[HotkeyListener] 🎹 Initialized (Carbon API)",
            "[HotkeyListener] ✅ Registered Global Hotkey: ⌥Space", "[FlipEngine] 🎬 Initialized", kReady.toStdString(),
            "[HotkeyListener] 🛑 Stopped listening", "[AppDelegate] 👋 Tallowby Ghost App terminating"));
    EXPECT_TRUE(isOpen(delegate->onboarding())) << "the first start ever";
    EXPECT_FALSE(isOpen(delegate->whatsNew())) << "a fresh installation has nothing that is new";
    EXPECT_EQ(UserDefaults().string(QStringLiteral("lastSeenAppVersion")), QStringLiteral("2.0"));
}

TEST_F(StartUp, WhatsNewComesWithTheFirstStartOfAnotherVersionOnly) {
    UserDefaults().setString(QStringLiteral("lastSeenAppVersion"), QStringLiteral("1.9"));
    start();
    ASSERT_TRUE(isOpen(delegate->whatsNew()));
    EXPECT_EQ(delegate->whatsNew()->window()->size(), QSize(520, 640));
    ASSERT_FALSE(delegate->whatsNew()->releases().isEmpty());
    delegate->whatsNew()->dismiss();
    EXPECT_EQ(delegate->whatsNew(), nullptr);

    owned = std::make_unique<test::FakeDesktop>();
    delegate.reset();
    start();
    EXPECT_EQ(delegate->whatsNew(), nullptr);
}

TEST_F(StartUp, TheSurveyIsOfferedOnceWhenNothingElseIsNew) {
    const auto restart = [this] {
        delegate.reset();
        owned = std::make_unique<test::FakeDesktop>();
        start();
        return isOpen(delegate->feedback());
    };
    EXPECT_FALSE(restart()) << "whoever has just come cannot answer yet";
    UserDefaults().setString(QStringLiteral("lastSeenAppVersion"), QStringLiteral("1.9"));
    EXPECT_FALSE(restart()) << "What's New comes first";
    EXPECT_TRUE(restart());
    FeedbackWindowController &window = *delegate->feedback();
    EXPECT_EQ(window.window()->size(), QSize(520, 680));
    EXPECT_TRUE(window.window()->flags() & Qt::WindowStaysOnTopHint);
    window.finish();
    EXPECT_EQ(delegate->feedback(), nullptr);
    EXPECT_FALSE(restart());
}

TEST_F(StartUp, WithoutTheKeyItAsksAndGoesOnByItselfOnce) {
    desktop->trustService.isTrusted = false;
    start();
    EXPECT_THAT(lines(), Contains("[AppDelegate] ⚠️ Missing permissions, showing onboarding"));
    EXPECT_EQ(lines().back(), "[AppDelegate] Status: Accessibility: denied");
    OnboardingWindowController &onboarding = *delegate->onboarding();
    ASSERT_TRUE(isOpen(&onboarding));
    EXPECT_EQ(onboarding.window()->size(), QSize(560, 460));
    EXPECT_TRUE(onboarding.window()->flags() & Qt::WindowStaysOnTopHint);
    EXPECT_EQ(onboarding.step(), OnboardingWindowController::Step::Permission);
    EXPECT_EQ(delegate->flipEngine(), nullptr);
    delegate->handle(InstanceCommand::toggle); // Nothing is there yet that could turn.

    onboarding.askForPermission();
    EXPECT_EQ(desktop->trustService.prompts, 1);
    EXPECT_EQ(desktop->trustService.settingsOpened, 1);
    desktop->trustService.isTrusted = true;
    ASSERT_TRUE(test::waitUntil([this] { return log.lines().contains(kReady); }));
    EXPECT_EQ(onboarding.step(), OnboardingWindowController::Step::TryIt);
    ASSERT_NE(delegate->flipEngine(), nullptr);
    EXPECT_EQ(log.lines().count(kReady), 1);

    onboarding.finish();
    EXPECT_EQ(delegate->onboarding(), nullptr);
}

TEST_F(StartUp, TheIntroductionLightsTheKeysThatAreHeldAndFollowsTheTurn) {
    start();
    delegate->handle(InstanceCommand::settings);
    ASSERT_TRUE(isOpen(delegate->settingsWindow()));
    delegate->settingsWindow()->showIntroduction();
    OnboardingWindowController &onboarding = *delegate->onboarding();
    ASSERT_TRUE(isOpen(&onboarding));
    const auto lit = [&onboarding] {
        QString text;
        for (const OnboardingKey &key : onboarding.keys()) {
            text += key.isLit ? key.text.toUpper() : key.text.toLower();
        }
        return text;
    };
    const auto send = [&onboarding](QEvent::Type type, Qt::Key key, quint32 scanCode) {
        QKeyEvent event(type, key, Qt::NoModifier, scanCode, 0, 0);
        QCoreApplication::sendEvent(onboarding.window(), &event);
    };
    constexpr quint32 kSpaceScanCode = 57 + 8;
    EXPECT_EQ(lit(), QStringLiteral("altspace"));
    send(QEvent::KeyPress, Qt::Key_Alt, 64);
    EXPECT_EQ(lit(), QStringLiteral("ALTspace"));
    EXPECT_FALSE(onboarding.isTurned());
    send(QEvent::KeyPress, Qt::Key_Space, kSpaceScanCode);
    EXPECT_EQ(lit(), QStringLiteral("ALTSPACE"));
    EXPECT_TRUE(onboarding.isTurned());
    send(QEvent::KeyRelease, Qt::Key_Alt, 64);
    EXPECT_EQ(lit(), QStringLiteral("altSPACE"));
    EXPECT_EQ(onboarding.step(), OnboardingWindowController::Step::TryIt);
}

TEST_F(StartUp, ATroubleWithTheKeyIsToldOfOnceByItself) {
    const auto restart = [this](const std::set<test::FakeHotKeyService::Combination> &taken, bool reachesEverywhere) {
        delegate.reset();
        owned = std::make_unique<test::FakeDesktop>();
        owned->hotKeyService.taken = taken;
        owned->hotKeyService.isEverywhere = reachesEverywhere;
        owned->hotKeyService.use = QStringLiteral("the window menu");
        start();
        return isOpen(delegate->onboarding());
    };
    EXPECT_TRUE(restart({}, true)) << "the first start ever";
    EXPECT_FALSE(restart({}, true));
    EXPECT_TRUE(restart({{49, 0x800}}, true));
    EXPECT_EQ(delegate->onboarding()->step(), OnboardingWindowController::Step::OtherKey);
    EXPECT_EQ(delegate->onboarding()->hotkeyAdvisor()->problem(),
              QStringLiteral("Alt + Space does not work: this desktop uses it for the window menu. These are free:"));
    EXPECT_FALSE(restart({{49, 0x800}}, true)) << "the same again";
    EXPECT_TRUE(restart({}, false));
    EXPECT_EQ(delegate->onboarding()->step(), OnboardingWindowController::Step::SomePlaces);
    EXPECT_FALSE(restart({}, true));
    EXPECT_TRUE(restart({{49, 0x800}}, true)) << "a trouble that has come back";
}

TEST_F(StartUp, AKeyThatIsTakenIsSaidWhereItCanBeChanged) {
    desktop->hotKeyService.taken = {{49, 0x800}, {49, 0x1800}};
    start();
    EXPECT_THAT(lines(), Contains(StartsWith("[HotkeyListener] ❌ Failed to register hotkey (status ")));
    delegate->handle(InstanceCommand::settings);
    HotkeyAdvisor &advisor = *delegate->settingsWindow()->hotkeyAdvisor();
    ASSERT_TRUE(test::waitUntil([&] { return !advisor.problem().isEmpty(); }));
    EXPECT_TRUE(advisor.problem().startsWith(u"Alt + Space does not work: ")) << qPrintable(advisor.problem());
    EXPECT_EQ(advisor.alternatives(), (QStringList{QStringLiteral("Alt + Shift + Space"), QStringLiteral("Alt + `"),
                                                   QStringLiteral("Alt + Super + Space")}));
    EXPECT_TRUE(desktop->hotKeyService.held().empty()) << "what was tried must be given back";

    advisor.choose(0);
    EXPECT_EQ(desktop->hotKeyService.held(), (std::set<test::FakeHotKeyService::Combination>{{49, 0xA00}}));
    EXPECT_TRUE(test::waitUntil([&] { return advisor.problem().isEmpty(); }));
    EXPECT_TRUE(advisor.alternatives().isEmpty());
}

TEST_F(StartUp, TheSwitchForLoginShowsWhatHoldsAndIsAskedForOnlyByTheUser) {
    start();
    delegate->handle(InstanceCommand::settings);
    StartAtLogin &login = *delegate->settingsWindow()->startAtLogin();
    EXPECT_TRUE(login.isOn());
    login.setOn(false);
    EXPECT_FALSE(login.isOn());
    EXPECT_TRUE(login.isAvailable());

    // The next start leaves it off, and has no reason to open the desktop's settings.
    owned = std::make_unique<test::FakeDesktop>();
    test::FakeDesktop &next = *owned;
    next.loginItemService.currentStatus = LoginItemStatus::requiresApproval;
    delegate.reset();
    start();
    EXPECT_EQ(next.loginItemService.registrations, 0);
    EXPECT_EQ(next.loginItemService.settingsOpened, 0);

    next.loginItemService.registrationError = QStringLiteral("no space left");
    delegate->handle(InstanceCommand::settings);
    StartAtLogin &again = *delegate->settingsWindow()->startAtLogin();
    again.setOn(true);
    EXPECT_FALSE(again.isOn());
    EXPECT_TRUE(again.problem().contains(u"no space left"));
}

} // namespace
} // namespace tallowby
