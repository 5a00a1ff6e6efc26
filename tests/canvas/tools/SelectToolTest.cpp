#include "canvas/tools/GestureDriver.h"

#include "support/WaitUntil.h"
#include <gmock/gmock.h>

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <QTransform>

namespace tallowby {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

QRectF frameOf(const Block &block) {
    return {block.xPosition(), block.yPosition(), block.width(), block.height()};
}

/// Where a corner of a block is drawn, with the block turned.
QPointF cornerOf(const Block &block, Corner corner) {
    const QRectF frame = frameOf(block);
    const QPointF direction = directionOf(corner);
    const QPointF fromMiddle(direction.x() * frame.width() / 2, direction.y() * frame.height() / 2);
    return frame.center() + QTransform().rotate(block.rotation()).map(fromMiddle);
}

struct SelectingTool : testing::Test {
    BlockPtr addSelected(BlockType type, const QRectF &frame) {
        const BlockPtr block = canvas.add(type, frame);
        canvas.model.selectOnly(block);
        return block;
    }
    BlockPtr addImage(QSize picture, const QRectF &frame) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        QImage image(picture, QImage::Format_RGB32);
        image.fill(Qt::red);
        image.save(&buffer, "PNG");
        const std::size_t before = canvas.model.blocks().size();
        canvas.model.processAndInsertImage(bytes, {});
        EXPECT_TRUE(test::waitUntil([&] { return canvas.model.blocks().size() > before; }));
        const BlockPtr block = canvas.model.blocks().back();
        canvas.model.setFrameDuringGesture(*block, frame);
        canvas.model.selectOnly(block);
        return block;
    }
    /// Drags the handle of the selected block.
    void pull(BlockHandle handle, QPointF translation) {
        const QPointF start = canvas.handle(handle);
        canvas.drag(start, start + translation);
    }

    test::GestureDriver canvas;
};

TEST_F(SelectingTool, ClicksSelectToggleOpenAndLetGo) {
    const BlockPtr text = canvas.add(BlockType::text, {-300, 0, 100, 50});
    text->setRawText(QStringLiteral("words"));
    const BlockPtr code = canvas.add(BlockType::code, {0, 0, 100, 50});
    const BlockPtr image = canvas.add(BlockType::image, {200, 0, 100, 50});
    canvas.click({50, 25});
    EXPECT_THAT(canvas.model.selectedBlocks(), ElementsAre(code));
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());
    canvas.click({50, 25});
    EXPECT_EQ(canvas.model.focusedBlock(), code) << "the second click opens it";
    canvas.click({250, 25});
    canvas.click({250, 25});
    EXPECT_FALSE(canvas.model.isAnyBlockEditing()) << "a picture takes no typing";
    EXPECT_THAT(canvas.model.selectedBlocks(), ElementsAre(image));
    canvas.click({50, 25}, Qt::ShiftModifier).click({250, 25}, Qt::ShiftModifier);
    EXPECT_THAT(canvas.model.selectedBlocks(), ElementsAre(code));
    canvas.click({-250, 25});
    EXPECT_EQ(canvas.model.focusedBlock(), text) << "a text opens at once";
    canvas.click({0, 200});
    EXPECT_THAT(canvas.model.selectedBlocks(), IsEmpty());
    EXPECT_EQ(canvas.canvasClicks, 1);
}

TEST_F(SelectingTool, ADragMovesABlockAtItsEndAndByTheZoom) {
    const BlockPtr block = canvas.add(BlockType::image, {0, 0, 100, 50});
    block->setNeedsSync(false);
    canvas.view.setScale(2);
    canvas.press({100, 50}).move({200, 50});
    EXPECT_EQ(canvas.dragOffsets.at(block.get()), QPointF(50, 0));
    EXPECT_EQ(block->xPosition(), 0) << "not before the end";
    EXPECT_FALSE(block->needsSync());
    canvas.release();
    EXPECT_THAT(canvas.dragOffsets, IsEmpty());
    EXPECT_EQ(frameOf(*block).topLeft(), QPointF(50, 0));
    EXPECT_TRUE(block->needsSync());
    EXPECT_TRUE(block->isSelected());
    canvas.model.undo();
    EXPECT_EQ(frameOf(*block).topLeft(), QPointF(0, 0));
    EXPECT_FALSE(canvas.model.canUndo()) << "it was one change";

    canvas.drag({100, 50}, {102, 51});
    EXPECT_EQ(frameOf(*block).topLeft(), QPointF(0, 0)) << "a click with a shaky hand";
    canvas.press({100, 50}).move({200, 50}).tools.cancel();
    EXPECT_THAT(canvas.dragOffsets, IsEmpty());
    EXPECT_EQ(frameOf(*block).topLeft(), QPointF(0, 0));
    EXPECT_FALSE(canvas.model.canUndo());
}

TEST_F(SelectingTool, ADragOnABlockThatIsEditedDoesNothing) {
    const BlockPtr text = canvas.add(BlockType::text, {0, 0, 100, 50});
    text->setRawText(QStringLiteral("words"));
    canvas.click({50, 25});
    canvas.drag({50, 25}, {150, 125});
    EXPECT_EQ(frameOf(*text).topLeft(), QPointF(0, 0));
    EXPECT_FALSE(canvas.model.canUndo());
    EXPECT_EQ(canvas.model.focusedBlock(), text);
}

TEST_F(SelectingTool, OneOfSeveralTakesTheOthersAlong) {
    const BlockPtr first = canvas.add(BlockType::image, {0, 0, 100, 50});
    const BlockPtr second = canvas.add(BlockType::image, {200, 0, 100, 50});
    const BlockPtr third = canvas.add(BlockType::image, {0, 100, 100, 50});
    canvas.click({10, 10}).click({210, 10}, Qt::ShiftModifier);
    canvas.drag({210, 10}, {215, 30});
    EXPECT_EQ(frameOf(*first).topLeft(), QPointF(5, 20));
    EXPECT_EQ(frameOf(*second).topLeft(), QPointF(205, 20));
    EXPECT_EQ(frameOf(*third).topLeft(), QPointF(0, 100));
    canvas.model.undo();
    EXPECT_TRUE(canvas.model.canUndo()) << "one change a block";
    canvas.model.redo();
    canvas.model.undoGesture();
    EXPECT_FALSE(canvas.model.canUndo()) << "and one gesture";
    EXPECT_EQ(frameOf(*first).topLeft(), QPointF(0, 0));
    EXPECT_EQ(frameOf(*second).topLeft(), QPointF(200, 0));
    canvas.drag({10, 110}, {20, 110});
    EXPECT_THAT(canvas.model.selectedBlocks(), ElementsAre(third)) << "one of none of them stands alone";
}

TEST_F(SelectingTool, WithAltOrControlACopyIsMoved) {
    const BlockPtr original = addSelected(BlockType::text, {0, 0, 100, 50});
    original->setRawText(QStringLiteral("words"));
    canvas.drag({10, 10}, {110, 60}, Qt::AltModifier);
    ASSERT_EQ(canvas.model.blocks().size(), 2U);
    const BlockPtr copy = canvas.model.blocks().back();
    EXPECT_EQ(frameOf(*original), QRectF(0, 0, 100, 50));
    EXPECT_EQ(frameOf(*copy), QRectF(100, 50, 100, 50));
    EXPECT_THAT(canvas.model.selectedBlocks(), ElementsAre(copy));
    EXPECT_FALSE(canvas.model.isAnyBlockEditing());

    canvas.press({110, 60}, Qt::ControlModifier).move({0, 200});
    EXPECT_EQ(canvas.model.blocks().size(), 3U);
    EXPECT_EQ(canvas.cursorAt({0, 200}), Qt::DragCopyCursor);
    canvas.tools.cancel();
    EXPECT_EQ(canvas.model.blocks().size(), 2U);
    EXPECT_THAT(canvas.model.selectedBlocks(), ElementsAre(copy));
}

TEST_F(SelectingTool, EmptyCanvasPansAndWithShiftSelectsWhatItTouches) {
    const BlockPtr first = canvas.add(BlockType::image, {0, 0, 100, 50});
    const BlockPtr second = canvas.add(BlockType::image, {200, 0, 100, 50});
    const BlockPtr apart = canvas.add(BlockType::image, {0, 200, 100, 50});
    canvas.press({-50, -50}).move({-20, 30});
    EXPECT_EQ(canvas.view.offset(), QPointF(30, 80));
    canvas.tools.cancel();
    EXPECT_EQ(canvas.view.offset(), QPointF(0, 0));

    canvas.click({10, 210});
    canvas.press({250, -50}, Qt::ShiftModifier).move({90, 10});
    EXPECT_EQ(canvas.marquee, QRectF(90, -50, 160, 60));
    EXPECT_THAT(canvas.model.selectedBlocks(), testing::UnorderedElementsAre(apart, first, second));
    canvas.move({150, 10});
    EXPECT_THAT(canvas.model.selectedBlocks(), testing::UnorderedElementsAre(apart, second)) << "it shrank";
    canvas.release();
    EXPECT_FALSE(canvas.marquee);
    EXPECT_THAT(canvas.model.selectedBlocks(), testing::UnorderedElementsAre(apart, second));
    canvas.press({-50, -50}, Qt::ShiftModifier).move({300, 300}).tools.cancel();
    EXPECT_THAT(canvas.model.selectedBlocks(), testing::UnorderedElementsAre(apart, second));
    EXPECT_FALSE(canvas.marquee);
}

TEST_F(SelectingTool, EachCornerKeepsTheOneOpposite) {
    const struct {
        Corner corner;
        QPointF translation;
        QRectF frame;
    } cases[] = {
        {Corner::bottomRight, {30, -20}, {0, 0, 330, 180}}, {Corner::bottomLeft, {30, 20}, {30, 0, 270, 220}},
        {Corner::topRight, {30, 20}, {0, 20, 330, 180}},    {Corner::topLeft, {-30, -20}, {-30, -20, 330, 220}},
        {Corner::topLeft, {280, 190}, {250, 160, 50, 40}},  {Corner::bottomLeft, {900, -900}, {250, 0, 50, 40}},
        {Corner::topRight, {-900, 900}, {0, 160, 50, 40}},  {Corner::bottomRight, {-900, -900}, {0, 0, 50, 40}},
    };
    const BlockPtr block = addSelected(BlockType::shape, {0, 0, 300, 200});
    for (const auto &[corner, translation, frame] : cases) {
        pull(corner, translation);
        EXPECT_EQ(frameOf(*block), frame) << int(corner);
        canvas.model.undo();
        EXPECT_EQ(frameOf(*block), QRectF(0, 0, 300, 200));
        EXPECT_FALSE(canvas.model.canUndo()) << "moved and resized at once";
    }
}

TEST_F(SelectingTool, AResizeStampsAndSavesAtItsEndOnly) {
    const BlockPtr block = addSelected(BlockType::shape, {0, 0, 300, 200});
    block->setNeedsSync(false);
    const Timestamp before = block->updatedAt();
    canvas.scheduler.advance(std::chrono::seconds(10));
    const QPointF handle = canvas.handle(Corner::bottomRight);
    canvas.press(handle).move(handle + QPointF(50, 50));
    EXPECT_EQ(frameOf(*block).size(), QSizeF(350, 250));
    EXPECT_FALSE(block->needsSync());
    EXPECT_EQ(block->updatedAt(), before);
    EXPECT_EQ(canvas.scheduler.pendingCalls(), 0U) << "no save is waiting";
    EXPECT_EQ(canvas.cursorAt(handle), Qt::SizeFDiagCursor);
    canvas.tools.cancel();
    EXPECT_EQ(frameOf(*block), QRectF(0, 0, 300, 200));
    EXPECT_FALSE(canvas.model.canUndo());
    for (const BlockHandle clicked : {BlockHandle(Corner::bottomRight), BlockHandle(RotationHandle{})}) {
        pull(clicked, {1, 0});
    }
    EXPECT_FALSE(canvas.model.canUndo()) << "a handle that is clicked with a shaky hand changes nothing";
    EXPECT_EQ(frameOf(*block), QRectF(0, 0, 300, 200));
    EXPECT_TRUE(block->isSelected());
    EXPECT_FALSE(block->needsSync());
    pull(Corner::bottomRight, {50, 50});
    EXPECT_TRUE(block->needsSync());
    EXPECT_NE(block->updatedAt(), before);
}

TEST_F(SelectingTool, APictureKeepsItsProportions) {
    const BlockPtr image = addImage({400, 200}, {0, 0, 200, 100});
    pull(Corner::bottomRight, {100, -500});
    EXPECT_EQ(frameOf(*image), QRectF(0, 0, 300, 150));
    canvas.model.undo();
    pull(Corner::topLeft, {-100, 70});
    EXPECT_EQ(frameOf(*image), QRectF(-100, -50, 300, 150));
    pull(Corner::topLeft, {900, 0});
    EXPECT_EQ(frameOf(*image), QRectF(150, 75, 50, 25)) << "the smallest height gives way";
}

TEST_F(SelectingTool, ATurnedBlockGrowsAlongItsOwnAxes) {
    for (const double rotation : {30.0, 90.0, -135.0}) {
        const BlockPtr block = addSelected(BlockType::shape, {-100, -50, 200, 100});
        block->setRotation(rotation);
        const QPointF fixed = cornerOf(*block, Corner::bottomRight);
        pull(Corner::topLeft, QTransform().rotate(rotation).map(QPointF(-40, -20)));
        EXPECT_NEAR(block->width(), 240, 1e-9);
        EXPECT_NEAR(block->height(), 120, 1e-9);
        EXPECT_NEAR(cornerOf(*block, Corner::bottomRight).x(), fixed.x(), 1e-9);
        EXPECT_NEAR(cornerOf(*block, Corner::bottomRight).y(), fixed.y(), 1e-9);
        canvas.model.deleteBlock(block);
    }
}

TEST_F(SelectingTool, TheRotationHandleTurnsByHowFarItGoesSideways) {
    const BlockPtr block = addSelected(BlockType::shape, {0, 0, 300, 200});
    block->setNeedsSync(false);
    canvas.view.setScale(0.5);
    const QPointF handle = canvas.handle(RotationHandle{});
    canvas.press(handle).move(handle + QPointF(30, 200));
    EXPECT_EQ(block->rotation(), 30) << "60 canvas points";
    EXPECT_FALSE(block->needsSync());
    canvas.tools.cancel();
    EXPECT_EQ(block->rotation(), 0);
    pull(RotationHandle{}, {0, 100});
    EXPECT_FALSE(canvas.model.canUndo());
    pull(RotationHandle{}, {-30, 0});
    EXPECT_EQ(block->rotation(), -30);
    EXPECT_TRUE(block->needsSync());
    canvas.model.undo();
    EXPECT_EQ(block->rotation(), 0);
}

TEST_F(SelectingTool, HandlesAreThereForOneBlockThatIsNotEdited) {
    const BlockPtr text = addSelected(BlockType::text, {0, 0, 300, 200});
    canvas.add(BlockType::image, {0, 250, 100, 50});
    text->setRawText(QStringLiteral("words"));
    EXPECT_TRUE(SelectTool::handles(canvas));
    canvas.click({10, 260}, Qt::ShiftModifier);
    EXPECT_FALSE(SelectTool::handles(canvas));
    canvas.click({100, 100});
    EXPECT_TRUE(canvas.model.isAnyBlockEditing());
    EXPECT_FALSE(SelectTool::handles(canvas));
}

TEST_F(SelectingTool, ThePointerSaysWhatADragWouldDo) {
    canvas.add(BlockType::text, {-300, 0, 100, 50});
    const BlockPtr block = addSelected(BlockType::image, {0, 0, 100, 50});
    EXPECT_EQ(canvas.cursorAt({-250, 25}), Qt::IBeamCursor);
    EXPECT_EQ(canvas.cursorAt({50, 25}), Qt::SizeAllCursor);
    EXPECT_EQ(canvas.cursorAt({0, 200}), Qt::ArrowCursor);
    EXPECT_EQ(canvas.cursorAt(canvas.handle(Corner::topRight)), Qt::SizeBDiagCursor);
    EXPECT_EQ(canvas.cursorAt(canvas.handle(RotationHandle{})), Qt::SizeHorCursor);
    canvas.model.setActiveTool(CanvasTool::Kind::pencil);
    EXPECT_EQ(canvas.cursorAt({50, 25}), Qt::CrossCursor);
}

} // namespace

} // namespace tallowby
