#include "app/LaunchAtLoginManager.h"
#include "app/PermissionManager.h"

#include "platform/AppEvents.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"
#include "support/FakeDesktop.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

namespace tallowby {
namespace {

using namespace std::chrono_literals;

TEST(PermissionManager, announcesAGrantOnceAndStopsLooking) {
    const test::LogCapture log;
    test::FakeAccessibilityTrust trust;
    trust.isTrusted = false;
    NotificationCenter notifications;
    test::VirtualScheduler scheduler;
    PermissionManager manager(trust, notifications, scheduler);
    EXPECT_EQ(manager.statusDescription(), QStringLiteral("Accessibility: denied"));

    int announcements = 0;
    const auto observation = notifications.observe(events::permissionsGranted, [&](const auto &) { ++announcements; });
    manager.startMonitoringPermissions();
    scheduler.advance(3500ms);
    EXPECT_EQ(trust.checks, 4) << "one at the start, then one a second";
    trust.isTrusted = true;
    scheduler.advance(500ms);
    EXPECT_EQ(announcements, 1);
    EXPECT_EQ(manager.statusDescription(), QStringLiteral("Accessibility: granted"));

    scheduler.advance(1h);
    EXPECT_EQ(announcements, 1);
    EXPECT_EQ(trust.checks, 5);
    EXPECT_EQ(scheduler.pendingCalls(), 0U);
    EXPECT_EQ(log.lines().first(), QStringLiteral("[PermissionManager] ⚠️ Accessibility: Not granted"));
    EXPECT_EQ(log.lines().last(), QStringLiteral("[PermissionManager] ✅ Accessibility: Granted"));
}

class LaunchAtLogin : public testing::Test {
protected:
    void start() {
        UserDefaults defaults(folder.file(QStringLiteral("defaults.conf")));
        LaunchAtLoginManager(item, defaults).enableIfNeeded();
    }

    test::LogCapture log;
    test::TemporaryFolder folder;
    test::FakeLoginItem item;
};

TEST_F(LaunchAtLogin, registersOnceAndSaysSo) {
    start();
    start();
    EXPECT_EQ(item.registrations, 1);
    EXPECT_EQ(log.lines(),
              QStringList{QStringLiteral("[LaunchAtLoginManager] ✅ Registered as login item (status: 1)")});
}

TEST_F(LaunchAtLogin, neverSwitchesOnWhatTheUserSwitchedOff) {
    item.currentStatus = LoginItemStatus::requiresApproval;
    start();
    start();
    EXPECT_EQ(item.registrations, 0);
    EXPECT_EQ(item.settingsOpened, 1) << "once in the life of the installation, not once a start";
    EXPECT_EQ(log.lines().size(), 2);
}

TEST_F(LaunchAtLogin, aFailureIsALineAndNothingMore) {
    item.currentStatus = LoginItemStatus::notFound;
    item.registrationError = QStringLiteral("read-only file system");
    start();
    EXPECT_EQ(item.settingsOpened, 0);
    EXPECT_EQ(log.lines(),
              QStringList{QStringLiteral(
                  "[LaunchAtLoginManager] ⚠️ Failed to register as login item: read-only file system")});
}

} // namespace
} // namespace tallowby
