#include "platform/linux/TrayWatch.h"
#include "platform/linux/x11/XcbConnection.h"
#include "support/WaitUntil.h"
#include "support/XSession.h"
#include "support/bus/TrayHost.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

namespace tallowby {
namespace {

class TrayWatchTest : public testing::Test {
protected:
    TrayWatchTest() {
        QObject::connect(&watch, &TrayWatch::appeared, [this] { ++appearances; });
    }

    XcbConnection x11;
    TrayWatch watch{x11};
    int appearances = 0;
};

TEST_F(TrayWatchTest, SeesAHostOnTheBusThatComesLateAndTellsOfItOnce) {
    EXPECT_FALSE(watch.hasAppeared());
    const QString address = test::XSession::adopted().environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    auto host = std::make_unique<test::TrayHost>(address);
    EXPECT_TRUE(test::waitUntil([this] { return watch.hasAppeared(); }));
    EXPECT_EQ(appearances, 1);

    host.reset();
    host = std::make_unique<test::TrayHost>(address);
    XcbConnection another;
    const TrayWatch late(another);
    EXPECT_TRUE(test::waitUntil([&late] { return late.hasAppeared(); })) << "one that was there before";
    EXPECT_EQ(appearances, 1) << "an item follows a tray that comes back by itself";
}

TEST_F(TrayWatchTest, SeesATrayThatEmbedsWindows) {
    EXPECT_FALSE(watch.hasAppeared());
    XcbConnection panel;
    const xcb_window_t window = xcb_generate_id(panel.handle());
    xcb_create_window(panel.handle(), XCB_COPY_FROM_PARENT, window, panel.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    const xcb_atom_t selection = panel.atom("_NET_SYSTEM_TRAY_S0");
    xcb_set_selection_owner(panel.handle(), window, selection, XCB_CURRENT_TIME);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = panel.root();
    message.type = panel.atom("MANAGER");
    message.data.data32[1] = selection;
    message.data.data32[2] = window;
    xcb_send_event(panel.handle(), 0, panel.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
    panel.flush();
    EXPECT_TRUE(test::waitUntil([this] { return watch.hasAppeared(); }));
    EXPECT_EQ(appearances, 1);
}

} // namespace
} // namespace tallowby
