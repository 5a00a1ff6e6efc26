#include "blocks/CanvasDriver.h"
#include "canvas/view/typing/LeadingKeys.h"

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
        canvas.scheduler.advance(LeadingKeys::kPatience * 2);
        canvas.type(QString::number(digit));
        EXPECT_EQ(canvas.model.activeTool().kind(), kinds[digit - 1]);
        EXPECT_FALSE(canvas.model.toolLocked());
    }
    canvas.scheduler.advance(LeadingKeys::kPatience * 2);
    canvas.type(QStringLiteral("66"));
    EXPECT_EQ(canvas.model.activeTool(), CanvasTool::shape(ShapeType::circle));
    canvas.type(QStringLiteral("666666"));
    EXPECT_EQ(canvas.model.activeTool(), CanvasTool::shape(ShapeType::rectangle)) << "round again";
    canvas.scheduler.advance(LeadingKeys::kPatience * 2);
    canvas.type(QStringLiteral("33"));
    EXPECT_TRUE(canvas.model.toolLocked());
    canvas.type(QStringLiteral("3"));
    EXPECT_FALSE(canvas.model.toolLocked());
    EXPECT_EQ(canvas.model.activeTool().kind(), Kind::pencil);
    EXPECT_TRUE(canvas.model.isEmpty());
    canvas.scheduler.advance(LeadingKeys::kPatience * 2);
    canvas.type(QStringLiteral("0"));
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("0")}) << "no tool has that one";
}

TEST_F(CanvasShortcuts, KeysThatTurnOutToBeginANoteAreText) {
    using Kind = CanvasTool::Kind;
    // A stop is a pause, a bar a click beside, an "e" Escape.
    const struct {
        QString keys;
        QString note;
        Kind tool = Kind::select;
        bool isLocked = false;
    } kCases[] = {
        {u"14:30 dentist"_qs, u"14:30 dentist"_qs},
        {u"3 eggs"_qs, u"3 eggs"_qs},
        {u"1984"_qs, u"1984"_qs},
        {u"? why"_qs, u"? why"_qs},
        {u"?? really"_qs, u"?? really"_qs},
        {u"33 rpm"_qs, u"33 rpm"_qs},
        {u"3"_qs, {}, Kind::pencil},
        {u"33"_qs, {}, Kind::pencil, true},
        {u"9."_qs, {}, Kind::voiceNote},
        {u"3.x"_qs, u"x"_qs, Kind::pencil},
        {u"2|x"_qs, u"x"_qs},
        {u"3ex"_qs, u"x"_qs},
    };
    for (const auto &[keys, note, tool, isLocked] : kCases) {
        for (const QChar key : keys) {
            if (key == u'.') {
                canvas.scheduler.advance(LeadingKeys::kPatience * 2);
            } else if (key == u'|') {
                canvas.click({20, 20});
            } else if (key == u'e' && !canvas.model.isAnyBlockEditing()) {
                canvas.press(Qt::Key_Escape);
            } else {
                // Shift is held for some of them.
                canvas.press(Qt::Key_Shift);
                canvas.type(key);
            }
        }
        EXPECT_EQ(canvas.texts().join(u'|'), note) << qPrintable(keys);
        EXPECT_EQ(canvas.model.activeTool().kind(), tool) << qPrintable(keys);
        EXPECT_EQ(canvas.model.toolLocked(), isLocked) << qPrintable(keys);
        EXPECT_FALSE(canvas.view->isHelpVisible()) << qPrintable(keys);
        canvas.model.endEditing();
        canvas.model.selectAll();
        canvas.model.deleteSelected();
        canvas.model.setActiveTool(Kind::select);
        canvas.model.setToolLocked(false);
        canvas.scheduler.advance(LeadingKeys::kPatience * 2);
    }
    canvas.type(u"3"_qs);
    canvas.compose(u"yue"_qs);
    canvas.compose({}, u"月"_qs);
    EXPECT_EQ(canvas.texts(), QStringList{u"3月"_qs}) << "an input method goes on with them, too";
}

TEST_F(CanvasShortcuts, EscapeClosesTheHelpThenPutsToolAndSelectionAway) {
    const BlockPtr block = canvas.add(BlockType::image, {0, 0, 100, 80});
    canvas.model.selectOnly(block);
    canvas.press(Qt::Key_Question, Qt::ShiftModifier, QStringLiteral("?"));
    EXPECT_TRUE(canvas.view->isHelpVisible());
    canvas.scheduler.advance(LeadingKeys::kPatience * 2);
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
    canvas.scheduler.advance(LeadingKeys::kPatience * 2);
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
