#include "blocks/CanvasDriver.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QKeyEvent>

namespace tallowby {

namespace {

struct CanvasKeys : testing::Test {
    test::CanvasDriver canvas;
};

TEST_F(CanvasKeys, TypingAnywhereMakesATextUnderThePointerInOrder) {
    canvas.pointAt({500, 350});
    canvas.type(QStringLiteral("hello, wörld 7"));
    ASSERT_EQ(canvas.texts(), QStringList{QStringLiteral("hello, wörld 7")});
    EXPECT_TRUE(canvas.isEditorFocused());
    const BlockPtr block = canvas.model.blocks().front();
    EXPECT_NEAR(block->xPosition(), 100 - 50, 1);
    EXPECT_NEAR(block->yPosition(), 50 - 12, 1);
    EXPECT_TRUE(block->isSelected());
}

TEST_F(CanvasKeys, ThePointerOutsideMeansTheMiddle) {
    canvas.pointAt({2'000, 350});
    canvas.type(QStringLiteral("x"));
    EXPECT_EQ(canvas.model.blocks().front()->xPosition(), -50);
}

TEST_F(CanvasKeys, ReturnAndEscapeEndEditingAndShiftReturnBreaksTheLine) {
    canvas.type(QStringLiteral("one"));
    canvas.press(Qt::Key_Return, Qt::ShiftModifier, QStringLiteral("\r"));
    canvas.type(QStringLiteral("two"));
    canvas.press(Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    canvas.settle();
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("one\ntwo")});
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
    EXPECT_EQ(canvas.focus(), canvas.view.get());

    // Return takes it up again with the caret at the end; the keypad's Enter and Escape end it, too.
    canvas.press(Qt::Key_Return);
    canvas.type(QStringLiteral("!"));
    canvas.press(Qt::Key_Enter, Qt::KeypadModifier);
    canvas.press(Qt::Key_Return);
    canvas.type(QStringLiteral("?"));
    canvas.press(Qt::Key_Escape, Qt::NoModifier, QStringLiteral("\x1b"));
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("one\ntwo!?")});
    EXPECT_TRUE(canvas.model.blocks().front()->isSelected());
    canvas.press(Qt::Key_Escape);
    EXPECT_FALSE(canvas.model.blocks().front()->isSelected());
    canvas.type(QStringLiteral("new"));
    EXPECT_EQ(canvas.texts().size(), 2) << "with nothing edited, typing starts another block";
}

TEST_F(CanvasKeys, KeysThatArriveLateGoToTheEditor) {
    canvas.type(QStringLiteral("a"));
    // Another item has taken the keyboard meanwhile.
    canvas.view->childItems().constLast()->forceActiveFocus();
    ASSERT_FALSE(canvas.isEditorFocused());
    canvas.type(QStringLiteral("bc"));
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("abc")});
}

TEST_F(CanvasKeys, CommandsAndControlCharactersDoNotType) {
    canvas.press(Qt::Key_X, Qt::AltModifier, QStringLiteral("x"));
    canvas.press(Qt::Key_X, Qt::MetaModifier, QStringLiteral("x"));
    canvas.press(Qt::Key_W, Qt::ControlModifier, QStringLiteral("\x17"));
    canvas.press(Qt::Key_F5);
    canvas.press(Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
    canvas.press(Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    canvas.press(Qt::Key_unknown, Qt::NoModifier, QStringLiteral("\x07"));
    EXPECT_TRUE(canvas.model.isEmpty());
    canvas.press(Qt::Key_At, Qt::GroupSwitchModifier, QStringLiteral("@"));
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("@")}) << "AltGr types";
}

TEST_F(CanvasKeys, EscapePostsNothingAndAnEmptyTextLeavesNothing) {
    int posts = 0;
    const auto close = canvas.notifications.observe(QStringLiteral("canvasCloseRequested"), [&](auto &) { ++posts; });
    const auto clear = canvas.notifications.observe(QStringLiteral("DeselectAllBlocks"), [&](auto &) { ++posts; });
    canvas.press(Qt::Key_Escape);
    canvas.press(Qt::Key_W, Qt::ControlModifier);
    canvas.type(QStringLiteral("x"));
    canvas.press(Qt::Key_Backspace);
    canvas.press(Qt::Key_Escape);
    canvas.settle();
    EXPECT_EQ(posts, 0);
    EXPECT_TRUE(canvas.model.isEmpty());
    EXPECT_TRUE(canvas.containers().empty());
}

TEST_F(CanvasKeys, NudgesAndDeletesTheSelectionButNotWhileEditing) {
    const BlockPtr block = canvas.add(BlockType::shape, {0, 0, 100, 80});
    const BlockPtr other = canvas.add(BlockType::shape, {200, 0, 100, 80});
    canvas.model.selectOnly(block);
    canvas.press(Qt::Key_Right);
    canvas.press(Qt::Key_Down, Qt::ShiftModifier);
    canvas.press(Qt::Key_Left, Qt::KeypadModifier);
    canvas.press(Qt::Key_Right, Qt::ShiftModifier);
    canvas.press(Qt::Key_Up);
    EXPECT_EQ(QPointF(block->xPosition(), block->yPosition()), QPointF(20, 18));
    EXPECT_EQ(other->xPosition(), 200);
    EXPECT_EQ(canvas.containers().at(block.get())->position(), QPointF(20, 18));

    canvas.type(QStringLiteral("ab"));
    canvas.model.toggleSelection(block);
    canvas.press(Qt::Key_Left);
    canvas.press(Qt::Key_Delete);
    EXPECT_EQ(block->xPosition(), 20);
    EXPECT_EQ(canvas.texts().constLast(), QStringLiteral("a")) << "the editor deletes a letter";
    canvas.press(Qt::Key_Escape);
    canvas.press(Qt::Key_A, Qt::ControlModifier);
    canvas.press(Qt::Key_Backspace);
    EXPECT_TRUE(canvas.model.isEmpty());
}

TEST_F(CanvasKeys, ReturnBringsASelectedBlockIntoView) {
    canvas.type(QStringLiteral("far"));
    canvas.press(Qt::Key_Escape);
    for (int i = 0; i < 5; ++i) {
        canvas.drag({50, 50}, {750, 550});
    }
    canvas.settle();
    ASSERT_TRUE(canvas.containers().empty());
    canvas.press(Qt::Key_Return);
    canvas.type(QStringLiteral(" away"));
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("far away")});
    EXPECT_TRUE(canvas.view->viewport().visibleRect().contains(canvas.model.blocks().front()->xPosition(),
                                                               canvas.model.blocks().front()->yPosition()));
}

TEST_F(CanvasKeys, ZoomsByKeysOnAnyLayout) {
    canvas.press(Qt::Key_Equal, Qt::ControlModifier);
    canvas.press(Qt::Key_Plus, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_NEAR(canvas.view->zoom(), 1.44, 1e-9);
    canvas.press(Qt::Key_Minus, Qt::MetaModifier);
    EXPECT_NEAR(canvas.view->zoom(), 1.2, 1e-9);
    canvas.press(Qt::Key_0, Qt::ControlModifier);
    canvas.press(Qt::Key_Control, Qt::ControlModifier);
    EXPECT_EQ(canvas.view->zoom(), 1.0);

    // The A of a Cyrillic layout: the letter is another one, the place is that of A (evdev 30, X11 38).
    canvas.add(BlockType::shape, {0, 0, 100, 80});
    QKeyEvent cyrillic(QEvent::KeyPress, 0x424, Qt::ControlModifier, 38, 0, 0, QStringLiteral("ф"));
    QCoreApplication::sendEvent(&canvas.window, &cyrillic);
    EXPECT_EQ(canvas.model.selectedBlocks().size(), 1U);
}

} // namespace

} // namespace tallowby
