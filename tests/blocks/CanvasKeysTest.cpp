#include "blocks/CanvasDriver.h"
#include "canvas/model/BlockGeometry.h"
#include "canvas/view/typing/NoteColumn.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QKeyEvent>

namespace tallowby {

namespace {

struct CanvasKeys : testing::Test {
    /// Everything that waits for the next frame happens.
    void showFrame() { static_cast<void>(canvas.window.grabWindow()); }
    QRectF caret() const {
        return canvas.focus()->mapRectToScene(canvas.focus()->property("cursorRectangle").toRectF());
    }
    QPointF onPaper(QPointF screen) const { return canvas.view->viewport().toCanvas(screen); }

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

TEST_F(CanvasKeys, ThoughtsTypedWhileThePointerRestsFormAColumn) {
    const auto think = [this](const QString &thought) {
        canvas.type(thought);
        showFrame();
        canvas.press(Qt::Key_Return);
        showFrame();
        const BlockPtr note = canvas.model.blocks().back();
        EXPECT_EQ(note->rawTextOrEmpty(), thought);
        return frameOf(*note);
    };
    canvas.pointAt({500, 450});
    QRectF before = think(QStringLiteral("thought"));
    EXPECT_NEAR(before.center().y(), 150, 1) << "the first is under the pointer";
    const QPointF corner = before.topLeft();
    for (int i = 0; i < 8; ++i) {
        const QRectF next = think(QStringLiteral("another thought"));
        EXPECT_NEAR(next.left(), corner.x(), 1);
        EXPECT_NEAR(next.top(), before.bottom() + NoteColumn::kGap, 1);
        EXPECT_LT(canvas.view->viewport().toScreen(next.bottomRight()).y(), 600 - 60) << "in view, above the tools";
        before = next;
    }
    EXPECT_LT(canvas.view->offset().y(), 0) << "the paper has moved";

    // Elsewhere on the paper the place under the pointer is free; so it is where the pointer has gone.
    canvas.wheel({500, 450}, {0, -120 * 20});
    EXPECT_LT((think(QStringLiteral("far")).center() - onPaper({500, 450})).manhattanLength(), 2);
    canvas.pointAt({300, 200});
    EXPECT_LT((think(QStringLiteral("there")).center() - onPaper({300, 200})).manhattanLength(), 2);
    // A note that has gone leaves its place.
    canvas.press(Qt::Key_Delete);
    EXPECT_LT((think(QStringLiteral("again")).center() - onPaper({300, 200})).manhattanLength(), 2);
}

TEST_F(CanvasKeys, ThePaperFollowsTheCaretAndNothingElse) {
    const auto caretX = [this] { return caret().right(); };
    for (const QPointF &corner : {QPointF(2, 2), QPointF(797, 597)}) {
        canvas.view->jumpTo({});
        canvas.pointAt(corner);
        canvas.type(QStringLiteral("x"));
        showFrame();
        EXPECT_TRUE(QRectF(79, 79, 642, 442).contains(caret())) << "begun at an edge, and to be read";
        canvas.press(Qt::Key_Escape);
    }
    canvas.pointAt({700, 300});
    for (int i = 0; i < 60; ++i) {
        canvas.type(QStringLiteral("word "));
        showFrame();
        ASSERT_LE(caretX(), 721) << i;
    }
    EXPECT_GT(caretX(), 700);
    canvas.press(Qt::Key_Home);
    showFrame();
    EXPECT_NEAR(caret().left(), 80, 2);

    canvas.wheel({400, 300}, {120 * 20, 0});
    const QPointF away = canvas.view->offset();
    canvas.press(Qt::Key_Control);
    showFrame();
    EXPECT_EQ(canvas.view->offset(), away) << "the wheel has been turned on purpose";
    canvas.compose(QStringLiteral("n"));
    showFrame();
    EXPECT_NE(canvas.view->offset(), away) << "what is composed is seen";
    canvas.compose({});
    canvas.press(Qt::Key_Escape);

    // A list grows downwards.
    const BlockPtr list = canvas.add(BlockType::checklist, {onPaper({100, 400}), QSizeF(280, 40)});
    list->setContent(R"({"items":[{"text":"one"}]})");
    canvas.settle();
    canvas.model.beginEditing(list);
    for (int i = 0; i < 12; ++i) {
        canvas.press(Qt::Key_Return);
        canvas.type(QStringLiteral("item"));
        showFrame();
        ASSERT_LE(caret().bottom(), 521) << i;
    }
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
