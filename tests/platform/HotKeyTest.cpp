#include "platform/ForeignClient.h"
#include "platform/VirtualKey.h"
#include "platform/linux/x11/X11HotKeyService.h"
#include "platform/linux/x11/X11Presentation.h"
#include "support/VirtualScheduler.h"
#include "support/WaitUntil.h"
#include "support/XKeyboard.h"
#include "support/XSession.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QWindow>

#include <X11/keysym.h>

namespace tallowby {

namespace {

using test::waitUntil;

constexpr xcb_keycode_t kSpaceKeycode = 65;
constexpr int kBadAccess = 10;
constexpr HotKeyID kID{0x5457464c, 1};

/// A window of this program that takes letters.
class LetterWindow final : public QWindow {
public:
    QString typed;

private:
    void keyPressEvent(QKeyEvent *event) override { typed += event->text(); }
};

class HotKey : public testing::Test {
protected:
    HotKey() {
        EXPECT_EQ(service.installHandler([this] {
            ++presses;
            if (onPress) {
                onPress();
            }
        }),
                  0);
        QObject::connect(x11, &XcbConnection::eventReceived, x11, [this](const xcb_generic_event_t &event) {
            keyPressEvents += (event.response_type & ~0x80) == XCB_KEY_PRESS ? 1 : 0;
        });
    }

    [[nodiscard]] HotKeyResult registerAltSpace() {
        return service.registerHotKey(keycode::kSpace, carbon::optionKey, kID);
    }
    /// Presses the combination and lets the keys go on that were kept back after it.
    void pressAltSpace() {
        const int before = presses;
        keyboard.chord(XK_Alt_L, XK_space);
        EXPECT_TRUE(waitUntil([&] { return presses > before; }));
        scheduler.advance(KeyboardHold::kLimit);
    }

    test::VirtualScheduler scheduler;
    test::XKeyboard keyboard{test::XSession::adopted().display()};
    XcbConnection *x11 = new XcbConnection;
    X11HotKeyService service{std::unique_ptr<XcbConnection>(x11), scheduler};
    std::function<void()> onPress;
    int presses = 0;
    int keyPressEvents = 0;
};

TEST_F(HotKey, IsPressedWhateverLocksAreOn) {
    keyboard.setModifierKeys(XCB_MOD_MASK_3, {XK_Scroll_Lock});
    const HotKeyResult result = registerAltSpace();
    ASSERT_EQ(result.status, 0);
    for (int locks = 0; locks < 8; ++locks) {
        SCOPED_TRACE(locks);
        for (const auto &[bit, key] : {std::pair(1, XK_Caps_Lock), {2, XK_Num_Lock}, {4, XK_Scroll_Lock}}) {
            if ((locks & bit) != 0) {
                keyboard.toggleLock(std::uint32_t(key));
            }
        }
        pressAltSpace();
        EXPECT_EQ(presses, locks + 1);
        for (const auto &[bit, key] : {std::pair(1, XK_Caps_Lock), {2, XK_Num_Lock}, {4, XK_Scroll_Lock}}) {
            if ((locks & bit) != 0) {
                keyboard.toggleLock(std::uint32_t(key));
            }
        }
    }
}

TEST_F(HotKey, ThatAnotherProgramHasInPartIsLeftToItWhole) {
    test::ForeignClient other;
    const std::uint16_t withNumLock = XCB_MOD_MASK_1 | XCB_MOD_MASK_2;
    ASSERT_EQ(other.grabKey(kSpaceKeycode, withNumLock), 0);

    const HotKeyResult refused = registerAltSpace();
    EXPECT_EQ(refused.status, kBadAccess);
    EXPECT_EQ(refused.registration, nullptr);
    for (const int locks : {0, int(XCB_MOD_MASK_LOCK), XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2}) {
        const auto modifiers = std::uint16_t(XCB_MOD_MASK_1 | locks);
        EXPECT_EQ(other.grabKey(kSpaceKeycode, modifiers), 0) << "locks " << locks;
        other.ungrabKey(kSpaceKeycode, modifiers);
    }

    other.ungrabKey(kSpaceKeycode, withNumLock);
    HotKeyResult result = registerAltSpace();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(other.grabKey(kSpaceKeycode, withNumLock), kBadAccess);
    result.registration.reset();
    EXPECT_EQ(other.grabKey(kSpaceKeycode, withNumLock), 0);
}

TEST_F(HotKey, FollowsItsModifierToAnotherBit) {
    const HotKeyResult result = registerAltSpace();
    keyboard.setModifierKeys(XCB_MOD_MASK_1, {});
    keyboard.setModifierKeys(XCB_MOD_MASK_4, {XK_Alt_L, XK_Alt_R});
    test::ForeignClient other;
    EXPECT_TRUE(waitUntil([&] { return other.grabKey(kSpaceKeycode, XCB_MOD_MASK_1) == 0; }));
    EXPECT_EQ(other.grabKey(kSpaceKeycode, XCB_MOD_MASK_4), kBadAccess);
    pressAltSpace();
    EXPECT_EQ(presses, 1);

    // Without any key for Super there is nothing to register.
    EXPECT_EQ(service.registerHotKey(keycode::kSpace, carbon::cmdKey, kID).status, XCB_VALUE);
}

TEST_F(HotKey, ThatIsLostToAChangeOfTheKeyboardIsSaidAndComesBackWithTheNext) {
    std::vector<std::int32_t> decisions;
    service.installDecisionHandler([&](std::int32_t status) { decisions.push_back(status); });
    const HotKeyResult result = registerAltSpace();
    test::ForeignClient other;
    ASSERT_EQ(other.grabKey(kSpaceKeycode, XCB_MOD_MASK_3), 0);
    keyboard.setModifierKeys(XCB_MOD_MASK_1, {});
    keyboard.setModifierKeys(XCB_MOD_MASK_3, {XK_Alt_L, XK_Alt_R});
    EXPECT_TRUE(waitUntil([&] { return decisions.size() == 1 && decisions.front() != 0; }));
    keyboard.setModifierKeys(XCB_MOD_MASK_3, {});
    keyboard.setModifierKeys(XCB_MOD_MASK_1, {XK_Alt_L, XK_Alt_R});
    ASSERT_TRUE(waitUntil([&] { return decisions.size() > 1; }));
    EXPECT_EQ(decisions.back(), 0);
    pressAltSpace();
    EXPECT_EQ(presses, 1);
}

TEST_F(HotKey, ThatIsHeldIsOnePress) {
    const HotKeyResult result = registerAltSpace();
    keyboard.press(XK_Alt_L);
    keyboard.press(XK_space);
    ASSERT_TRUE(waitUntil([&] { return presses > 0; }));
    scheduler.advance(KeyboardHold::kLimit);
    EXPECT_TRUE(waitUntil([&] { return keyPressEvents > 2; })) << "the key does not repeat";
    EXPECT_EQ(presses, 1);
    keyboard.release(XK_space);
    keyboard.release(XK_Alt_L);
    pressAltSpace();
    EXPECT_EQ(presses, 2);
}

TEST_F(HotKey, KeepsWhatIsTypedNextForTheWindowThatItBringsUp) {
    test::ForeignClient editor("Editor");
    editor.showAndFocus();
    XcbConnection shared;
    X11Presentation presentation(shared);
    LetterWindow panel;
    panel.resize(300, 200);
    onPress = [&] {
        presentation.preparePanel(panel);
        panel.show();
        presentation.activateIgnoringOtherApps(panel);
    };
    const HotKeyResult result = registerAltSpace();
    keyboard.press(XK_Alt_L);
    keyboard.press(XK_space);
    keyboard.release(XK_Alt_L);
    keyboard.type(u"ab"); // Space is still down, as with quick fingers.
    keyboard.release(XK_space);
    keyboard.type(u"c1");

    EXPECT_TRUE(waitUntil([&] { return panel.typed.size() >= 4; }));
    EXPECT_EQ(panel.typed, u"abc1");
    EXPECT_EQ(editor.typed(), "");
    EXPECT_EQ(scheduler.pendingCalls(), 0U);

    // While the window has the keyboard nothing is kept back, and the next press counts.
    keyboard.chord(XK_Alt_L, XK_space);
    keyboard.type(u"d");
    EXPECT_TRUE(waitUntil([&] { return panel.typed.endsWith(u'd'); }));
    EXPECT_EQ(presses, 2);
}

TEST_F(HotKey, GivesTheKeysBackWhenNoWindowComesUp) {
    test::ForeignClient editor("Editor");
    editor.showAndFocus();
    const HotKeyResult result = registerAltSpace();
    keyboard.chord(XK_Alt_L, XK_space);
    keyboard.type(u"abc");
    ASSERT_TRUE(waitUntil([&] { return presses == 1; }));
    EXPECT_EQ(editor.typed(), "");
    scheduler.advance(KeyboardHold::kLimit);
    EXPECT_TRUE(waitUntil([&] { return editor.typed() == "abc"; })) << editor.typed();
}

TEST_F(HotKey, LeavesNothingToTheOtherWindowWhenItsOwnIsSlowToGetTheKeyboard) {
    test::ForeignClient editor("Editor");
    editor.showAndFocus();
    LetterWindow panel;
    panel.setFlag(Qt::WindowDoesNotAcceptFocus);
    onPress = [&] {
        // Nobody gives it the keyboard.
        panel.show();
        panel.setFlag(Qt::WindowDoesNotAcceptFocus, false);
    };
    const HotKeyResult result = registerAltSpace();
    keyboard.chord(XK_Alt_L, XK_space);
    keyboard.type(u"abc");
    ASSERT_TRUE(waitUntil([&] { return presses == 1; }));
    scheduler.advance(KeyboardHold::kLimit);
    ASSERT_TRUE(waitUntil([&] {
        const auto attributes = xcbReply<xcb_get_window_attributes_reply>(
            x11->handle(), xcb_get_window_attributes(x11->handle(), xcb_window_t(panel.winId())));
        return attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    }));
    scheduler.advance(KeyboardHold::kGrace);
    EXPECT_TRUE(waitUntil([&] { return panel.typed == u"abc"; })) << panel.typed.toStdString();
    EXPECT_EQ(editor.typed(), "");
}

TEST_F(HotKey, OfAProgramThatDiesFreezesNothing) {
    test::ForeignClient editor("Editor");
    editor.showAndFocus();
    {
        X11HotKeyService dying(std::make_unique<XcbConnection>(), scheduler);
        bool pressed = false;
        dying.installHandler([&] { pressed = true; });
        const HotKeyResult result = dying.registerHotKey(keycode::kSpace, carbon::optionKey, kID);
        keyboard.chord(XK_Alt_L, XK_space);
        keyboard.type(u"abc");
        ASSERT_TRUE(waitUntil([&] { return pressed; }));
    }
    EXPECT_TRUE(waitUntil([&] { return editor.typed() == "abc"; })) << editor.typed();
}

TEST_F(HotKey, NeedsAKeyAndAServer) {
    const std::uint32_t noSuchKey = 10'000;
    EXPECT_EQ(service.registerHotKey(noSuchKey, carbon::optionKey, kID).status, XCB_VALUE);

    X11HotKeyService nowhere(std::make_unique<XcbConnection>(":99999"), scheduler);
    EXPECT_EQ(nowhere.installHandler([] {}), X11HotKeyService::kNoServer);
    EXPECT_EQ(nowhere.registerHotKey(keycode::kSpace, carbon::optionKey, kID).status, X11HotKeyService::kNoServer);
}

} // namespace

} // namespace tallowby
