#include "blocks/CanvasDriver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowby {

namespace {

struct CanvasPointer : testing::Test {
    /// A text of its own measure, at this place of the canvas.
    BlockPtr addText(QPointF at, const QString &text) {
        const BlockPtr block = canvas.add(BlockType::text, QRectF(at, QSizeF(300, 200)), text);
        canvas.settle();
        return block;
    }

    test::CanvasDriver canvas;
};

TEST_F(CanvasPointer, AClickEditsATextWhereItWasClicked) {
    const BlockPtr block = addText({0, 0}, QStringLiteral("first line\nsecond"));
    canvas.click({400 + 5, 300 + 5});
    ASSERT_TRUE(canvas.isEditorFocused());
    canvas.type(QStringLiteral("*"));
    EXPECT_EQ(block->rawTextOrEmpty(), QStringLiteral("*first line\nsecond"));
    canvas.press(Qt::Key_Escape);
    canvas.settle();
    canvas.click({400 + block->width() - 2, 300 + block->height() - 4});
    canvas.type(QStringLiteral("."));
    EXPECT_EQ(block->rawTextOrEmpty(), QStringLiteral("*first line\nsecond."));
    EXPECT_TRUE(block->isSelected());
}

TEST_F(CanvasPointer, AClickOnEmptyCanvasEndsEditingAndDeselects) {
    int posts = 0;
    const auto seen = canvas.notifications.observe(QStringLiteral("DeselectAllBlocks"), [&](auto &) { ++posts; });
    const BlockPtr block = addText({0, 0}, QStringLiteral("text"));
    canvas.click({410, 310});
    canvas.click({100, 100});
    EXPECT_EQ(posts, 1);
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
    EXPECT_FALSE(block->isSelected());
    EXPECT_EQ(canvas.focus(), canvas.view.get());
    canvas.drag({100, 100}, {150, 150});
    EXPECT_EQ(posts, 1) << "a drag is no click";
}

TEST_F(CanvasPointer, AClickSelectsOtherKindsAndShiftAddsThem) {
    const BlockPtr sticky = canvas.add(BlockType::stickyNote, {0, 0, 100, 100});
    const BlockPtr picture = canvas.add(BlockType::image, {150, 0, 100, 100});
    canvas.click({410, 310});
    EXPECT_THAT(canvas.model.selectedBlocks(), testing::ElementsAre(sticky));
    canvas.click({560, 310}, Qt::ShiftModifier);
    EXPECT_THAT(canvas.model.selectedBlocks(), testing::ElementsAre(sticky, picture));
    canvas.click({410, 310}, Qt::ShiftModifier);
    EXPECT_THAT(canvas.model.selectedBlocks(), testing::ElementsAre(picture));
    canvas.press(Qt::Key_Return);
    EXPECT_FALSE(canvas.model.isAnyBlockEditing()) << "nothing takes typing there";
}

TEST_F(CanvasPointer, PansByDraggingWheelAndMiddleButton) {
    canvas.add(BlockType::shape, {0, 0, 100, 100});
    canvas.drag({100, 100}, {160, 80});
    EXPECT_EQ(canvas.view->viewport().offset(), QPointF(60, -20));
    canvas.drag({470, 300}, {480, 310});
    EXPECT_EQ(canvas.view->viewport().offset(), QPointF(60, -20)) << "a drag that starts on a block is the block's";
    canvas.drag({470, 300}, {410, 320}, Qt::MiddleButton);
    EXPECT_EQ(canvas.view->viewport().offset(), QPointF(0, 0));
    canvas.wheel({300, 300}, {0, -120});
    EXPECT_EQ(canvas.view->viewport().offset(), QPointF(0, -60));
    canvas.wheel({300, 300}, {0, -120}, Qt::ShiftModifier);
    EXPECT_EQ(canvas.view->viewport().offset(), QPointF(-60, -60));
}

TEST_F(CanvasPointer, ZoomsAboutThePointerByWheelAndPinch) {
    const QPointF at(250, 420);
    const QPointF under = canvas.view->viewport().toCanvas(at);
    canvas.wheel(at, {0, 120}, Qt::ControlModifier);
    EXPECT_NEAR(canvas.view->zoom(), 1.15, 1e-9);
    canvas.pinch(at, 0.2);
    EXPECT_NEAR(canvas.view->zoom(), 1.38, 1e-9);
    EXPECT_NEAR(canvas.view->viewport().toCanvas(at).x(), under.x(), 1e-9);
    EXPECT_NEAR(canvas.view->viewport().toCanvas(at).y(), under.y(), 1e-9);
    canvas.wheel(at, {120, 0}, Qt::ControlModifier);
    EXPECT_NEAR(canvas.view->zoom(), 1.38, 1e-9) << "no vertical turn";
    canvas.wheel(at, {0, -120'000}, Qt::ControlModifier);
    EXPECT_EQ(canvas.view->zoom(), 0.25);
}

TEST_F(CanvasPointer, EachChangeTouchesOnlyItsOwnContainers) {
    for (int i = 0; i < 5; ++i) {
        canvas.add(BlockType::shape, {i * 150.0 - 300, 0, 100, 80});
    }
    const auto before = canvas.containers();
    ASSERT_EQ(before.size(), 5U);
    canvas.pointAt({600, 500});
    canvas.type(QStringLiteral("x"));
    canvas.drag({100, 50}, {200, 150});
    auto after = canvas.containers();
    EXPECT_EQ(after.size(), 6U);
    after.erase(canvas.model.blocks().back().get());
    EXPECT_EQ(after, before) << "a new block and a pan within the margin";

    canvas.press(Qt::Key_Escape);
    canvas.model.bringToFront(canvas.model.blocks().front());
    canvas.settle();
    after = canvas.containers();
    after.erase(canvas.model.focusedBlock().get());
    for (const auto &[block, container] : before) {
        EXPECT_EQ(after.at(block), container);
    }
    for (int i = 0; i < 8; ++i) {
        canvas.drag({100, 50}, {500, 50});
    }
    canvas.settle();
    EXPECT_TRUE(canvas.containers().empty()) << "what is far out of sight costs nothing";
}

TEST_F(CanvasPointer, TheCloseButtonAsksForTheWayBack) {
    int posts = 0;
    const auto seen = canvas.notifications.observe(QStringLiteral("canvasCloseRequested"), [&](auto &) { ++posts; });
    canvas.click({800 - 16 - 18, 16 + 18});
    EXPECT_EQ(posts, 1);
    canvas.click({16 + 18, 600 - 16 - 18});
    EXPECT_NEAR(canvas.view->zoom(), 1 / 1.2, 1e-9) << "and the zoom control is where it is said to be";
    canvas.type(QStringLiteral("still types"));
    EXPECT_EQ(canvas.texts(), QStringList{QStringLiteral("still types")});
}

} // namespace

} // namespace tallowby
