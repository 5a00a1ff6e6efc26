#include "canvas/tools/GestureDriver.h"

#include <gtest/gtest.h>

namespace tallowby {

namespace {

struct DrawingTools : testing::Test {
    void take(const CanvasTool &tool) { canvas.model.setActiveTool(tool); }
    [[nodiscard]] CanvasTool::Kind inHand() const { return canvas.model.activeTool().kind(); }
    [[nodiscard]] QRectF frameOf(const Block &block) const {
        return {block.xPosition(), block.yPosition(), block.width(), block.height()};
    }

    test::GestureDriver canvas;
};

TEST_F(DrawingTools, AToolGoesBackAfterOneUseUnlessItIsLocked) {
    using Kind = CanvasTool::Kind;
    for (const Kind kind : {Kind::hand, Kind::pencil, Kind::eraser, Kind::shape, Kind::image, Kind::text,
                            Kind::stickyNote, Kind::voiceNote}) {
        for (const bool isLocked : {false, true}) {
            take(kind);
            canvas.model.setToolLocked(isLocked);
            canvas.drag({-200, -200}, {-150, -150});
            EXPECT_EQ(inHand(), isLocked ? kind : Kind::select) << int(kind);
            canvas.press({0, 0});
            canvas.tools.cancel();
            EXPECT_EQ(inHand(), isLocked ? kind : Kind::select) << "what was given up was no use";
        }
    }
}

TEST_F(DrawingTools, EachStrokeIsASketchThatOneUndoTakesBack) {
    take(CanvasTool::Kind::pencil);
    canvas.model.setPencilColor(QStringLiteral("#2F6BEB"));
    canvas.press({10, 20}).move({60, 80});
    EXPECT_EQ(canvas.live.currentStrokePoints().size(), 4U);
    canvas.release();
    EXPECT_TRUE(canvas.live.currentStrokePoints().empty());
    ASSERT_EQ(canvas.model.blocks().size(), 1U);
    const std::vector<SketchStroke> strokes = canvas.model.blocks().front()->sketchStrokes();
    ASSERT_EQ(strokes.size(), 1U);
    EXPECT_EQ(strokes[0].points.front(), (SketchPoint{10, 20, 1}));
    EXPECT_EQ(strokes[0].points.back(), (SketchPoint{60, 80, 1}));
    EXPECT_EQ(strokes[0].color, QStringLiteral("#2F6BEB"));
    EXPECT_EQ(frameOf(*canvas.model.blocks().front()), QRectF(-30, -20, 130, 140));
    canvas.model.undo();
    EXPECT_TRUE(canvas.model.isEmpty());

    take(CanvasTool::Kind::pencil);
    canvas.click({0, 0});
    EXPECT_TRUE(canvas.model.isEmpty()) << "a dot is no stroke";
    EXPECT_FALSE(canvas.model.canUndo());
    take(CanvasTool::Kind::pencil);
    canvas.press({0, 0}).move({50, 50});
    canvas.tools.cancel();
    EXPECT_TRUE(canvas.model.isEmpty());
    EXPECT_FALSE(canvas.model.canUndo());
}

TEST_F(DrawingTools, ShapesAreDrawnFromAnyCornerAndAClickGivesTheUsualOne) {
    take(CanvasTool::shape(ShapeType::diamond));
    canvas.press({50, 60}).move({-100, -40});
    const Block &shape = *canvas.model.blocks().front();
    EXPECT_EQ(frameOf(shape), QRectF(-100, -40, 150, 100)) << "while it is being drawn";
    EXPECT_FALSE(canvas.model.canUndo());
    canvas.release();
    EXPECT_EQ(shape.shapeType(), ShapeType::diamond);
    EXPECT_TRUE(canvas.model.canUndo());

    take(CanvasTool::shape(ShapeType::line));
    canvas.click({200, 200});
    EXPECT_EQ(frameOf(*canvas.model.blocks().back()).size(), QSizeF(150, 20));
    take(CanvasTool::shape(ShapeType::arrow));
    canvas.press({0, 0}).move({50, 50});
    canvas.tools.cancel();
    EXPECT_EQ(canvas.model.blocks().size(), 2U);
}

TEST_F(DrawingTools, TheEraserTakesTheTopmostBlockAtAPress) {
    const BlockPtr below = canvas.add(BlockType::code, {0, 0, 200, 100});
    const BlockPtr above = canvas.add(BlockType::image, {50, 50, 200, 100});
    take(CanvasTool::Kind::eraser);
    canvas.press({100, 80});
    EXPECT_FALSE(above->isLive());
    canvas.release();
    EXPECT_TRUE(below->isLive());
    take(CanvasTool::Kind::eraser);
    canvas.press({10, 10});
    canvas.tools.cancel();
    EXPECT_TRUE(below->isLive()) << "given up in time";
}

TEST_F(DrawingTools, PlacingToolsPutTheirKindWhereTheyArePressed) {
    const std::pair<CanvasTool::Kind, BlockType> kinds[] = {
        {CanvasTool::Kind::text, BlockType::text},
        {CanvasTool::Kind::stickyNote, BlockType::stickyNote},
        {CanvasTool::Kind::voiceNote, BlockType::voiceNote},
    };
    for (const auto &[tool, type] : kinds) {
        take(tool);
        canvas.drag({30, 40}, {200, 200});
        const BlockPtr block = canvas.model.blocks().back();
        EXPECT_EQ(block->blockType(), type);
        EXPECT_TRUE(frameOf(*block).contains(QPointF(30, 40)) || frameOf(*block).topLeft() == QPointF(30, 40));
        EXPECT_EQ(canvas.model.focusedBlock(), block) << "open for typing";
    }
    take(CanvasTool::Kind::image);
    canvas.click({-70, 90});
    EXPECT_EQ(canvas.pickedAt, QPointF(-70, 90));
}

TEST_F(DrawingTools, TheHandMovesThePaperAndNothingOnIt) {
    const BlockPtr block = canvas.add(BlockType::code, {0, 0, 200, 100});
    take(CanvasTool::Kind::hand);
    EXPECT_EQ(canvas.cursorAt({10, 10}), Qt::OpenHandCursor);
    canvas.press({10, 10}).move({13, 90});
    EXPECT_EQ(canvas.cursorAt({13, 90}), Qt::ClosedHandCursor);
    EXPECT_EQ(canvas.view.offset(), QPointF(3, 80));
    canvas.release();
    EXPECT_EQ(frameOf(*block).topLeft(), QPointF(0, 0));
    take(CanvasTool::Kind::hand);
    canvas.press({10, 10}).move({100, 100});
    canvas.tools.cancel();
    EXPECT_EQ(canvas.view.offset(), QPointF(3, 80));
}

} // namespace

} // namespace tallowby
