#include "canvas/CanvasFixture.h"

#include "canvas/model/BlockGeometry.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <random>

namespace tallowby {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct CanvasOperations : test::CanvasFixture {};

TEST_F(CanvasOperations, EachKindIsSpawnedAtItsPlaceSelectedOpenAndUndoable) {
    const struct {
        BlockType type;
        QRectF frame;
    } cases[] = {
        {BlockType::text, {950, 488, 100, 24}},         {BlockType::table, {1000, 500, 300, 200}},
        {BlockType::automation, {1000, 500, 300, 200}}, {BlockType::checklist, {1000, 500, 300, 200}},
        {BlockType::image, {1000, 500, 300, 200}},      {BlockType::code, {1000, 500, 400, 200}},
        {BlockType::divider, {1000, 500, 300, 20}},     {BlockType::stickyNote, {1000, 500, 200, 200}},
        {BlockType::shape, {940, 460, 120, 80}},        {BlockType::voiceNote, {880, 445, 240, 110}},
        {BlockType::videoNote, {850, 390, 300, 220}},   {BlockType::sketch, {800, 350, 400, 300}},
        {BlockType::icon, {968, 468, 64, 64}},
    };
    qint64 zIndex = 0;
    for (const auto &[type, where] : cases) {
        SCOPED_TRACE(std::string(rawValue(type).data()));
        const BlockPtr block = model.spawnBlock({1000, 500}, type, u"x"_qs);
        EXPECT_EQ(block->blockType(), type);
        EXPECT_EQ(frame(*block), where);
        EXPECT_EQ(block->zIndex(), ++zIndex);
        EXPECT_THAT(model.selectedBlocks(), ElementsAre(block));
        EXPECT_EQ(model.focusedBlock(), block);
        EXPECT_EQ(model.visibleBlocks().back(), block);
        EXPECT_TRUE(block->needsSync());
    }
    const auto items = model.blocks()[3]->checklistItems();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_FALSE(items[0]->id().isNull() || items[0]->isDone() || !items[0]->text().isEmpty());
    for (const auto &block : std::vector(model.blocks())) {
        model.undo();
        EXPECT_TRUE(storage.findById(block->id()));
    }
    EXPECT_TRUE(model.isEmpty());

    const BlockPtr line = model.spawnShape({100, 100}, ShapeType::line);
    EXPECT_EQ(frame(*line), QRectF(25, 90, 150, 20));
    EXPECT_EQ(line->shapeType(), ShapeType::line);
    const BlockPtr icon = model.spawnIcon({0, 0}, u"heart"_qs);
    EXPECT_EQ(frame(*icon), QRectF(-32, -32, 64, 64));
    EXPECT_EQ(icon->iconName(), u"heart"_qs);
    EXPECT_FALSE(model.isAnyBlockEditing());
    EXPECT_THAT(model.selectedBlocks(), ElementsAre(icon));
}

TEST_F(CanvasOperations, ToolSettingsTellOnlyOfRealChanges) {
    int told = 0;
    for (const auto signal : {&CanvasViewModel::activeToolChanged, &CanvasViewModel::toolLockedChanged,
                              &CanvasViewModel::pencilWidthChanged, &CanvasViewModel::rightClickCursorPosChanged}) {
        QObject::connect(&model, signal, [&told] { ++told; });
    }
    EXPECT_EQ(model.activeTool(), CanvasTool());
    for (int twice = 0; twice < 2; ++twice) {
        model.setActiveTool(CanvasTool::shape(ShapeType::arrow));
        model.setToolLocked(true);
        model.setPencilWidth(5);
        model.setRightClickCursorPos({3, 4});
    }
    EXPECT_EQ(told, 4);
    model.setPencilWidth(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(model.pencilWidth(), 5);
    EXPECT_NE(CanvasTool::shape(ShapeType::arrow), CanvasTool(CanvasTool::Kind::shape));
}

TEST_F(CanvasOperations, CopiesStandBesideTheirOriginals) {
    const BlockPtr sketch = draw({{0, 0}, {100, 50}});
    sketch->setRotation(30);
    sketch->setTextColor(u"#112233"_qs);
    model.duplicateBlock(sketch);
    const BlockPtr copy = model.blocks().back();
    EXPECT_NE(copy->id(), sketch->id());
    EXPECT_EQ(frame(*copy), frame(*sketch).translated(30, 30));
    EXPECT_EQ(copy->sketchStrokes().front().points, (std::vector<SketchPoint>{{30, 30}, {130, 80}}));
    EXPECT_EQ(copy->rotation(), 0);
    EXPECT_EQ(copy->textColor(), u"#112233"_qs);
    EXPECT_FALSE(model.isAnyBlockEditing());
    model.undo();
    EXPECT_TRUE(copy->isLive()) << "a copy goes with Delete";
    EXPECT_FALSE(sketch->isLive());

    const BlockPtr note = type(u"note"_qs);
    model.selectOnly(note);
    model.duplicateSelected();
    EXPECT_EQ(model.focusedBlock(), model.blocks().back()) << "the copy of a text is opened";
    model.selectAll();
    model.duplicateSelected();
    EXPECT_EQ(model.blocks().size(), 6U);
    EXPECT_EQ(model.selectedBlocks(), std::vector(model.blocks().begin() + 3, model.blocks().end()));
    EXPECT_FALSE(model.isAnyBlockEditing());
}

TEST_F(CanvasOperations, DepthRaisesAndLowersWithoutEnd) {
    const BlockPtr only = add(BlockType::shape, {0, 0, 10, 10});
    model.sendToBack(only);
    model.sendToBack(only);
    EXPECT_EQ(only->zIndex(), -1);
    model.bringToFront(only);
    model.bringToFront(only);
    EXPECT_EQ(only->zIndex(), 1);
    const BlockPtr upper = model.spawnShape({5, 5}, ShapeType::circle);
    model.sendToBack(upper);
    EXPECT_EQ(upper->zIndex(), -2);
    EXPECT_THAT(model.blocks(), ElementsAre(upper, only));
    EXPECT_THAT(model.visibleBlocks(), ElementsAre(upper, only));
    EXPECT_EQ(add(BlockType::shape, {0, 0, 1, 1}, 40)->zIndex(), 40);
    EXPECT_EQ(model.spawnShape({}, ShapeType::circle)->zIndex(), 41) << "above what came from elsewhere";
}

TEST_F(CanvasOperations, FlipsTurnOverAndBack) {
    const BlockPtr block = model.spawnShape({}, ShapeType::arrow);
    block->setNeedsSync(false);
    model.toggleFlipHorizontal(block);
    EXPECT_TRUE(block->flipHorizontal() && !block->flipVertical() && block->needsSync());
    EXPECT_EQ(block->shapeType(), ShapeType::arrow);
    model.toggleFlipHorizontal(block);
    model.toggleFlipVertical(block);
    EXPECT_TRUE(!block->flipHorizontal() && block->flipVertical());
}

TEST_F(CanvasOperations, StrokesMakeTheSketchAndFitIt) {
    const BlockPtr empty = model.beginSketch({100, 100});
    EXPECT_EQ(frame(*empty), QRectF(80, 80, 40, 40));
    EXPECT_THAT(model.selectedBlocks(), ElementsAre(empty));
    model.commitStroke(empty, std::vector<SketchPoint>{{1, 1}}, u"#000000"_qs, 2);
    EXPECT_THAT(empty->sketchStrokes(), IsEmpty());
    model.deleteBlockSilently(empty);
    EXPECT_TRUE(model.isEmpty() && !model.canUndo());

    const std::vector<SketchPoint> points{{0, 0}, {100, 20, 0.5}};
    model.commitStroke(empty, points, u"#102030"_qs, 4);
    EXPECT_THAT(model.blocks(), ElementsAre(empty)) << "deleted while it was being drawn";
    EXPECT_THAT(model.visibleBlocks(), ElementsAre(empty));
    EXPECT_THAT(empty->sketchStrokes(), ElementsAre(SketchStroke{points, u"#102030"_qs, 4}));
    EXPECT_EQ(frame(*empty), QRectF(-40, -40, 180, 100));
    model.updatePosition(empty, {-40, -40}, {60, -40});
    EXPECT_EQ(empty->sketchStrokes()[0].points[0].x, 100);
    model.undo();
    EXPECT_EQ(empty->sketchStrokes()[0].points[0].x, 0) << "points go back with the block";
}

TEST_F(CanvasOperations, ShapesAreDrawnInAnyDirectionAndClicksGetASize) {
    const BlockPtr dragged = model.beginShapeDraw(ShapeType::circle, {100, 100});
    EXPECT_EQ(frame(*dragged), QRectF(100, 100, 1, 1));
    model.updateShapeDrawFrame(dragged, {100, 100}, {40, 100});
    EXPECT_EQ(frame(*dragged), QRectF(40, 100, 60, 1));
    model.updateShapeDrawFrame(dragged, {100, 100}, {40, 30});
    model.finalizeShapeDraw(dragged);
    EXPECT_EQ(frame(*dragged), QRectF(40, 30, 60, 70));
    const BlockPtr clicked = model.beginShapeDraw(ShapeType::line, {0, 0});
    model.updateShapeDrawFrame(clicked, {0, 0}, {7, -7});
    model.finalizeShapeDraw(clicked);
    EXPECT_EQ(QSizeF(clicked->width(), clicked->height()), QSizeF(150, 20));
    model.undo();
    model.undo();
    EXPECT_TRUE(model.isEmpty());
}

TEST_F(CanvasOperations, TheEraserTakesTheTopmostHoweverThin) {
    const BlockPtr lower = add(BlockType::text, {0, 0, 100, 100}, 1);
    const BlockPtr upper = add(BlockType::shape, {50, 50, 100, 100}, 2);
    const BlockPtr hair = add(BlockType::divider, {300, 0, 0, 0}, 3);
    model.eraseAt({75, 75});
    EXPECT_TRUE(lower->isLive() && !upper->isLive());
    model.eraseAt({300.5, 0.5});
    EXPECT_FALSE(hair->isLive());
    model.eraseAt({500, 500});
    model.undo();
    model.undo();
    EXPECT_THAT(model.blocks(), ElementsAre(lower, upper, hair));
}

TEST_F(CanvasOperations, MarqueesSelectWhatTheyTouchAndKeepWhatTheyAreTold) {
    const BlockPtr near = add(BlockType::shape, {0, 0, 50, 50});
    const BlockPtr turned = add(BlockType::shape, {100, 0, 200, 10});
    const BlockPtr far = add(BlockType::shape, {900, 0, 50, 50});
    turned->setRotation(90);
    model.refreshBlocks();
    model.selectIn({0, 0, 180, 4});
    EXPECT_THAT(model.selectedBlocks(), ElementsAre(near)) << "the turned one stands upright around (200, 5)";
    model.selectIn({190, 60, 10, 20}, {far});
    EXPECT_THAT(model.selectedBlocks(), ElementsAre(far, turned));
    EXPECT_FALSE(near->isSelected());
}

TEST_F(CanvasOperations, FramesAndReadingOrderOfHostileScenesAreThoseOfAPlainLook) {
    std::mt19937 dice(7);
    const auto number = [&dice](double limit) { return (double(dice() % 2'000'001) / 1e6 - 1) * limit; };
    for (int i = 0; i < 300; ++i) {
        const double size = i % 17 == 0 ? 1e300 : i % 13 == 0 ? -50 : 200;
        auto block = std::make_shared<Block>(QUuid(), BlockType::shape,
                                             QRectF(number(2000), number(2000), std::abs(number(size)), number(size)));
        block->setRotation(i % 5 == 0 ? number(360) : 0);
        block->setZIndex(dice() % 40);
        storage.insert(block);
    }
    model.refreshBlocks();
    for (int round = 0; round < 200; ++round) {
        const BlockPtr moved = model.blocks()[dice() % model.blocks().size()];
        switch (round % 5) {
        case 0:
            model.setFrameDuringGesture(*moved, {number(2000), number(2000), 50, 50});
            break;
        case 1:
            model.bringToFront(moved);
            break;
        case 2:
            model.deleteBlock(moved);
            break;
        case 3:
            model.undo();
            break;
        default:
            model.sendToBack(moved);
        }
        const QRectF rect(number(2000), number(2000), 400, 300);
        std::vector<BlockPtr> plain;
        std::ranges::copy_if(model.blocks(), std::back_inserter(plain),
                             [&rect](const BlockPtr &block) { return touches(*block, rect); });
        ASSERT_EQ(model.blocksIn(rect), plain) << round;
        ASSERT_TRUE(std::ranges::is_sorted(model.blocks(), {}, [](const BlockPtr &block) { return block->zIndex(); }));
    }
}

TEST_F(CanvasOperations, TabGoesThroughRowsAndRound) {
    const BlockPtr right = add(BlockType::text, {300, 0, 100, 100});
    const BlockPtr left = add(BlockType::text, {0, 30, 100, 40});
    const BlockPtr below = add(BlockType::text, {-50, 90, 100, 100});
    using enum CanvasViewModel::ReadingDirection;
    EXPECT_EQ(model.nextInReadingOrder(nullptr, forward), left);
    EXPECT_EQ(model.nextInReadingOrder(left, forward), right);
    EXPECT_EQ(model.nextInReadingOrder(right, forward), below);
    EXPECT_EQ(model.nextInReadingOrder(below, forward), left);
    EXPECT_EQ(model.nextInReadingOrder(left, backward), below);
}

} // namespace

} // namespace tallowby
