#include "FlipFixture.h"

namespace tallowby {
namespace {

using namespace std::chrono_literals;
using test::Flip;
using test::NotingCanvas;

TEST_F(Flip, opensAndClosesInOrderAndSaysSo) {
    engine->prepare();
    const QString screenFrame = u"(0.0, 0.0, 1280.0, 720.0)"_qs;
    open();
    EXPECT_EQ(log.take(), (QStringList{u"[FlipEngine] 🚀 Starting flip sequence..."_qs,
                                       u"[FlipWindow] 🪟 Configured: "_qs + screenFrame,
                                       u"[FlipEngine] 🏗️ Flip Window & Container Setup (Once)"_qs,
                                       u"[FlipWindow] 👁️ Shown on main screen"_qs,
                                       u"[FlipSceneView] 📖 Flip complete. isOpen: true"_qs,
                                       u"[FlipEngine] 🏗️ Persistent Hosting View Created"_qs}));
    EXPECT_EQ(posted, QStringList{u"flipComplete"_qs});
    EXPECT_EQ(lastUserInfo.value(u"screenFrame"_qs).toRectF(), QRectF(0, 0, 1280, 720));
    const QStringList closing{u"[FlipEngine] 🔙 Closing flip..."_qs,
                              u"[FlipSceneView] 📖 Flip complete. isOpen: false"_qs, u"[FlipWindow] 🙈 Hidden"_qs,
                              u"[FlipSceneView] 🧹 Resources cleaned up and GPU memory released"_qs,
                              u"[FlipEngine] ✅ Flip closed, desktop restored. (Window persisted)"_qs};
    toggle();
    EXPECT_EQ(posted.last(), u"flipReversing");
    turn();
    EXPECT_EQ(log.take(), closing);
    EXPECT_EQ(posted.last(), u"flipClosed");
    EXPECT_EQ(engine->state(), FlipState::idle);

    QQuickItem *const host = canvas.parentItem();
    open();
    EXPECT_EQ(canvas.parentItem(), host) << "the same host is shown again";
    EXPECT_EQ(log.take(), (QStringList{u"[FlipEngine] 🚀 Starting flip sequence..."_qs,
                                       u"[FlipWindow] 👁️ Shown on main screen"_qs,
                                       u"[FlipSceneView] 📖 Flip complete. isOpen: true"_qs}));
}

TEST_F(Flip, dropsWhatDoesNotFitTheState) {
    post(events::canvasCloseRequested);
    EXPECT_EQ(engine->state(), FlipState::idle);
    toggle();
    toggle();
    post(events::canvasCloseRequested);
    EXPECT_EQ(engine->state(), FlipState::animating);
    std::ignore = log.take();
    post(events::flipTriggered);
    EXPECT_EQ(log.take(), QStringList{u"[FlipEngine] ⚠️ Flip already in progress, state: animating"_qs});
    turn();
    EXPECT_EQ(engine->state(), FlipState::showing) << "the second press was dropped, not kept for later";
    post(events::flipTriggered);
    EXPECT_EQ(log.lines().last(), u"[FlipEngine] ⚠️ Flip already in progress, state: showing");
    post(events::canvasCloseRequested);
    toggle();
    post(events::canvasCloseRequested);
    EXPECT_EQ(engine->state(), FlipState::closing);
    turn();
    EXPECT_EQ(engine->state(), FlipState::idle);
    clock.advance(10s);
    EXPECT_EQ(posted, (QStringList{u"flipComplete"_qs, u"flipReversing"_qs, u"flipClosed"_qs}));
    EXPECT_EQ(clock.pendingCalls(), 0U);
}

TEST_F(Flip, takesTheDesktopOverAndGivesItBackAsItWas) {
    test::FakePresentation &presentation = desktop.presentationService;
    presentation.options = kAutoHideDock;
    for (int round = 1; round <= 2; ++round) {
        toggle();
        EXPECT_EQ(presentation.options, kAutoHideDock | kAutoHideMenuBar);
        EXPECT_EQ(presentation.policy, ActivationPolicy::regular);
        EXPECT_EQ(presentation.panelsPrepared, round);
        EXPECT_TRUE(engine->window()->canBecomeKey());
        turn();
        toggle();
        EXPECT_FALSE(engine->window()->canBecomeKey());
        EXPECT_TRUE(engine->window()->flags() & Qt::WindowDoesNotAcceptFocus);
        EXPECT_EQ(desktop.workspaceService.activated, QList<quint64>(round, 77)) << "from the start of the turn back";
        turn();
        EXPECT_EQ(presentation.options, kAutoHideDock);
        EXPECT_EQ(presentation.policy, ActivationPolicy::accessory);
        EXPECT_FALSE(engine->window()->isVisible());
    }
    EXPECT_EQ(desktop.workspaceService.activated.size(), 2) << "who has the keyboard is not activated once more";
}

TEST_F(Flip, coversTheChosenDisplayAsItIsAtEachOpening) {
    open();
    toggle();
    turn();
    desktop.displayService.displays = {{.id = 1, .name = {}, .frame = {0, 0, 1024, 768}, .isMain = true},
                                       {.id = 2, .name = {}, .frame = {1024, 0, 640, 480}}};
    settings.setSelectedDisplayID(2);
    open();
    EXPECT_EQ(engine->window()->geometry(), QRect(1024, 0, 640, 480));
    EXPECT_EQ(canvas.size(), QSizeF(640, 480));
    EXPECT_EQ(lastUserInfo.value(u"screenFrame"_qs).toRectF(), QRectF(1024, 0, 640, 480));
    toggle();
    turn();
    desktop.displayService.displays.clear();
    open();
}

TEST_F(Flip, keysReachTheCanvasFromTheFirstMomentAndClicksOnlyOnceItIsUp) {
    toggle();
    FlipWindow &window = *engine->window();
    test::typeKey(window, Qt::Key_H, u"h"_qs);
    test::click(window, {300, 300});
    scene().advanceFrame();
    test::typeKey(window, Qt::Key_E, u"e"_qs);
    turn();
    test::typeKey(window, Qt::Key_Y, u"y"_qs);
    EXPECT_EQ(canvas.typed, u"hey");
    EXPECT_EQ(canvas.presses, 0);
    test::click(window, {300, 300});
    EXPECT_EQ(canvas.presses, 1);
    toggle();
    test::click(window, {300, 300});
    EXPECT_EQ(canvas.presses, 1);
}

TEST_F(Flip, aWishToCloseTheWindowIsARequest) {
    open();
    QCloseEvent close;
    QCoreApplication::sendEvent(engine->window(), &close);
    EXPECT_FALSE(close.isAccepted());
    EXPECT_EQ(engine->state(), FlipState::closing);
    EXPECT_TRUE(engine->window()->isVisible());
}

TEST_F(Flip, closesOnlyWhenAnotherApplicationStaysInFront) {
    test::FakeWorkspace &workspace = desktop.workspaceService;
    test::FakePresentation &presentation = desktop.presentationService;
    open();
    const int before = presentation.activations;
    workspace.bringToFront({}, 5);
    clock.advance(2s);
    EXPECT_EQ(presentation.activations, before) << "an application without a name is left alone";

    workspace.bringToFront(u"panel"_qs, 5);
    clock.advance(399ms);
    workspace.bringSelfToFront();
    clock.advance(2s);
    EXPECT_EQ(presentation.activations, before) << "it only passed by";

    workspace.bringToFront(u"chat"_qs, 6);
    clock.advance(400ms);
    EXPECT_EQ(presentation.activations, before + 1);
    clock.advance(2s);
    EXPECT_EQ(engine->state(), FlipState::showing) << "the keyboard came back";

    presentation.isActivationRefused = true;
    workspace.bringToFront(u"chat"_qs, 6);
    clock.advance(699ms);
    EXPECT_EQ(engine->state(), FlipState::showing);
    clock.advance(1ms);
    EXPECT_EQ(engine->state(), FlipState::closing);
    turn();
    EXPECT_TRUE(workspace.activated.isEmpty()) << "who the user went to keeps the keyboard";
}

TEST_F(Flip, anOldAbsenceDoesNotCloseANewOpening) {
    desktop.presentationService.isActivationRefused = true;
    desktop.motionService.isReduced = true;
    open();
    desktop.workspaceService.bringToFront(u"chat"_qs, 6);
    clock.advance(100ms);
    toggle();
    turn();
    clock.advance(2s);
    EXPECT_EQ(engine->state(), FlipState::idle);
}

TEST_F(Flip, showsAFreshCanvasWhenNoneWasHandedOver) {
    engine->setTallowbyContent(nullptr);
    std::ignore = log.take();
    open();
    EXPECT_EQ(canvasesMade, 1);
    EXPECT_EQ(log.take().mid(5),
              (QStringList{u"[FlipEngine] ⚠️ Creating fallback InfiniteCanvasView for persistence"_qs,
                           u"[FlipEngine] 🏗️ Persistent Hosting View Created"_qs}));
    toggle();
    turn();
    open();
    EXPECT_EQ(canvasesMade, 1);
    toggle();
    turn();
    auto handedOver = std::make_unique<NotingCanvas>();
    engine->setTallowbyContent(handedOver.get());
    open();
    toggle();
    turn();
    handedOver.reset();
    open();
    EXPECT_EQ(canvasesMade, 1) << "a canvas that died counts as never handed over: the first one is back";
    test::typeKey(*engine->window(), Qt::Key_A, u"a"_qs);
}

TEST_F(Flip, aCanvasHandedOverLaterTakesTheNextOpening) {
    NotingCanvas next;
    open();
    engine->setTallowbyContent(&next);
    EXPECT_EQ(canvas.window(), engine->window()) << "what the user sees stays until the card has turned";
    toggle();
    turn();
    open();
    EXPECT_EQ(next.window(), engine->window());
    EXPECT_TRUE(next.hasActiveFocus());
    EXPECT_EQ(canvas.window(), nullptr);
    EXPECT_EQ(log.lines().last(), u"[FlipEngine] 🏗️ Persistent Hosting View Created");
    toggle();
    NotingCanvas last;
    engine->setTallowbyContent(&last);
    turn();
    open();
    EXPECT_EQ(last.size(), QSizeF(1280, 720));
}

TEST_F(Flip, turnsWithoutFramesAndWithoutMotion) {
    toggle();
    clock.advance(3s);
    EXPECT_EQ(engine->state(), FlipState::showing) << "a window that cannot be seen gets no frames";
    desktop.motionService.isReduced = true;
    toggle();
    clock.advance(100ms);
    turn();
    EXPECT_EQ(engine->state(), FlipState::idle);
    EXPECT_EQ(posted, (QStringList{u"flipComplete"_qs, u"flipReversing"_qs, u"flipClosed"_qs}));
}

TEST_F(Flip, nothingTouchesAnEngineThatHasGone) {
    open();
    desktop.workspaceService.bringToFront(u"chat"_qs, 6);
    engine.reset();
    clock.advance(2s);
    EXPECT_EQ(desktop.presentationService.activations, 1);
    toggle();
    EXPECT_EQ(clock.pendingCalls(), 0U);
    EXPECT_EQ(canvas.window(), nullptr);
}

TEST_F(Flip, diesInTheMiddleOfATurn) {
    toggle();
    scene().advanceFrame();
    engine.reset();
    clock.advance(5s);
    EXPECT_TRUE(posted.isEmpty());
}

TEST_F(Flip, cleanupRestoresTheDesktopAtOnce) {
    desktop.presentationService.options = kAutoHideMenuBar;
    toggle();
    std::ignore = log.take();
    engine->cleanup();
    EXPECT_EQ(desktop.presentationService.options, kAutoHideMenuBar);
    EXPECT_EQ(desktop.presentationService.policy, ActivationPolicy::accessory);
    EXPECT_EQ(log.take(), QStringList{u"[FlipSceneView] 🧹 Resources cleaned up and GPU memory released"_qs});
    clock.advance(5s);
    EXPECT_TRUE(posted.isEmpty());
}

} // namespace
} // namespace tallowby
