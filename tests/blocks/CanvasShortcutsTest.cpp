#include "blocks/CanvasDriver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowby {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct CanvasShortcuts : testing::Test {
    void command(Qt::Key key, Qt::KeyboardModifiers more = Qt::NoModifier) {
        canvas.press(key, Qt::ControlModifier | more);
    }

    test::CanvasDriver canvas;
};

TEST_F(CanvasShortcuts, UndoRedoDuplicateAndThePasteboard) {
    const BlockPtr block = canvas.add(BlockType::image, {0, 0, 100, 80});
    canvas.model.selectOnly(block);
    canvas.press(Qt::Key_Right);
    canvas.press(Qt::Key_Right);
    command(Qt::Key_Z);
    command(Qt::Key_Z);
    EXPECT_EQ(block->xPosition(), 0);
    command(Qt::Key_Z, Qt::ShiftModifier);
    command(Qt::Key_Y);
    EXPECT_EQ(block->xPosition(), 4);
    command(Qt::Key_D);
    EXPECT_EQ(canvas.model.blocks().size(), 2U);
    canvas.press(Qt::Key_Delete);
    canvas.model.selectOnly(block);
    command(Qt::Key_C);
    EXPECT_FALSE(canvas.pasteboard.content.data.empty());
    command(Qt::Key_X);
    EXPECT_TRUE(canvas.model.isEmpty());
    canvas.pointAt({500, 350});
    command(Qt::Key_V);
    EXPECT_EQ(canvas.model.blocks().size(), 1U);
    canvas.pasteboard.write({});
    canvas.pasteboard.content.text = QStringLiteral("pasted");
    command(Qt::Key_V);
    EXPECT_EQ(canvas.texts().constLast(), QStringLiteral("pasted"));
    const BlockPtr pasted = canvas.model.blocks().back();
    EXPECT_NEAR(pasted->xPosition() + pasted->width() / 2, 100, 1);
}

TEST_F(CanvasShortcuts, CommandsAreTheEditorsWhileItIsOpen) {
    canvas.type(QStringLiteral("one"));
    command(Qt::Key_A);
    canvas.type(QStringLiteral("2"));
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("2")}) << "all of the text, and a digit types";
    command(Qt::Key_Z);
    EXPECT_EQ(canvas.model.blocks().size(), 1U);
    EXPECT_TRUE(canvas.model.isAnyBlockEditing());
    canvas.type(QStringLiteral(" ?"));
    EXPECT_FALSE(canvas.view->isHelpVisible());
}

TEST_F(CanvasShortcuts, DigitsChooseToolsAndLockThem) {
    using Kind = CanvasTool::Kind;
    const Kind kinds[] = {Kind::select, Kind::hand,  Kind::pencil,     Kind::eraser,   Kind::text,
                          Kind::shape,  Kind::image, Kind::stickyNote, Kind::voiceNote};
    for (int digit = 9; digit >= 1; --digit) {
        canvas.type(QString::number(digit));
        EXPECT_EQ(canvas.model.activeTool().kind(), kinds[digit - 1]);
        EXPECT_FALSE(canvas.model.toolLocked());
    }
    canvas.type(QStringLiteral("66"));
    EXPECT_EQ(canvas.model.activeTool(), CanvasTool::shape(ShapeType::circle));
    canvas.type(QStringLiteral("666666"));
    EXPECT_EQ(canvas.model.activeTool(), CanvasTool::shape(ShapeType::rectangle)) << "round again";
    canvas.type(QStringLiteral("33"));
    EXPECT_TRUE(canvas.model.toolLocked());
    canvas.type(QStringLiteral("3"));
    EXPECT_FALSE(canvas.model.toolLocked());
    EXPECT_EQ(canvas.model.activeTool().kind(), Kind::pencil);
    EXPECT_TRUE(canvas.model.isEmpty());
    canvas.type(QStringLiteral("0"));
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("0")}) << "no tool has that one";
}

TEST_F(CanvasShortcuts, EscapeClosesTheHelpThenPutsToolAndSelectionAway) {
    const BlockPtr block = canvas.add(BlockType::image, {0, 0, 100, 80});
    canvas.model.selectOnly(block);
    canvas.press(Qt::Key_Question, Qt::ShiftModifier, QStringLiteral("?"));
    EXPECT_TRUE(canvas.view->isHelpVisible());
    canvas.type(QStringLiteral("3"));
    canvas.press(Qt::Key_Escape);
    EXPECT_FALSE(canvas.view->isHelpVisible());
    EXPECT_EQ(canvas.model.activeTool().kind(), CanvasTool::Kind::pencil);
    EXPECT_TRUE(block->isSelected());
    canvas.press(Qt::Key_Escape);
    EXPECT_EQ(canvas.model.activeTool().kind(), CanvasTool::Kind::select);
    EXPECT_FALSE(block->isSelected());
    EXPECT_TRUE(canvas.model.blocks().size() == 1);
    canvas.press(Qt::Key_Question, Qt::ShiftModifier, QStringLiteral("?"));
    canvas.type(QStringLiteral("a"));
    EXPECT_FALSE(canvas.view->isHelpVisible()) << "what is typed is seen";
    EXPECT_EQ(canvas.model.blocks().size(), 2U);
}

TEST_F(CanvasShortcuts, TabWalksTheBlocksAndOutToTheButtons) {
    const BlockPtr second = canvas.add(BlockType::image, {0, 0, 100, 80}, QStringLiteral("second"));
    const BlockPtr third = canvas.add(BlockType::image, {0, 900, 100, 80});
    const BlockPtr first = canvas.add(BlockType::image, {-200, 10, 100, 80});
    canvas.press(Qt::Key_Tab);
    EXPECT_THAT(canvas.model.selectedBlocks(), ElementsAre(first));
    canvas.press(Qt::Key_Tab);
    EXPECT_THAT(canvas.model.selectedBlocks(), ElementsAre(second));
    EXPECT_TRUE(canvas.view->offset().isNull()) << "it is in view";
    canvas.press(Qt::Key_Tab);
    EXPECT_THAT(canvas.model.selectedBlocks(), ElementsAre(third));
    canvas.settle();
    EXPECT_TRUE(canvas.view->viewport().visibleRect().contains(QRectF(0, 900, 100, 80)));
    EXPECT_TRUE(canvas.containers().contains(third.get()));
    canvas.press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_THAT(canvas.model.selectedBlocks(), ElementsAre(second));
    EXPECT_EQ(canvas.containers().at(second.get())->accessibleDescription(), QStringLiteral("at 0, 0"));
    EXPECT_EQ(canvas.focus(), canvas.view.get());
    canvas.press(Qt::Key_Tab);
    canvas.press(Qt::Key_Tab);
    EXPECT_THAT(canvas.model.selectedBlocks(), IsEmpty());
    EXPECT_NE(canvas.focus(), canvas.view.get());
}

} // namespace

} // namespace tallowby
