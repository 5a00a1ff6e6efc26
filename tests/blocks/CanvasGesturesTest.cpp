#include "blocks/CanvasDriver.h"
#include "canvas/container/SelectionChromeView.h"
#include "canvas/drawing/PathDrawingItem.h"
#include "canvas/overlay/menu/ContextMenuView.h"
#include "platform/AppEvents.h"
#include "platform/desktop/MotionPreference.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QQuickItemGrabResult>

#include <algorithm>

namespace tallowby {

namespace {

using namespace std::chrono_literals;

using testing::ElementsAre;

constexpr QPointF kOrigin{400, 300};

struct CanvasGestures : testing::Test {
    BlockPtr addSelected(BlockType type, const QRectF &frame) {
        const BlockPtr block = canvas.add(type, frame);
        canvas.model.selectOnly(block);
        return block;
    }
    [[nodiscard]] SelectionChromeView *chrome() {
        canvas.settle();
        auto *found = canvas.view->findChild<SelectionChromeView *>();
        found->ensurePolished();
        return found;
    }
    [[nodiscard]] const BlockContainerView &container(const BlockPtr &block) {
        return *canvas.containers().at(block.get());
    }

    test::CanvasDriver canvas;
};

TEST_F(CanvasGestures, ABlockFollowsThePointerAndStaysWhereItIsLeft) {
    const BlockPtr block = canvas.add(BlockType::image, {0, 0, 100, 80});
    canvas.down(kOrigin + QPointF(50, 40));
    canvas.moveTo(kOrigin + QPointF(150, 60));
    EXPECT_TRUE(canvas.view->isGestureRunning());
    EXPECT_TRUE(container(block).isDragging());
    EXPECT_EQ(container(block).position(), QPointF(100, 20));
    EXPECT_EQ(block->xPosition(), 0);
    EXPECT_FALSE(chrome()->areHandlesShown());
    canvas.wheel(kOrigin + QPointF(150, 60), {0, 120});
    EXPECT_EQ(container(block).position(), QPointF(100, -40)) << "it stays under the pointer";
    canvas.wheel(kOrigin + QPointF(150, 60), {0, -120});
    canvas.up();
    EXPECT_FALSE(canvas.view->isGestureRunning());
    EXPECT_EQ(QPointF(block->xPosition(), block->yPosition()), QPointF(100, 20));
    EXPECT_EQ(container(block).position(), QPointF(100, 20));
    EXPECT_TRUE(chrome()->areHandlesShown());
}

TEST_F(CanvasGestures, EscapePutsBackAndOtherKeysWait) {
    const BlockPtr block = addSelected(BlockType::image, {0, 0, 100, 80});
    canvas.down(kOrigin + QPointF(50, 40));
    canvas.moveTo(kOrigin + QPointF(150, 60));
    canvas.press(Qt::Key_Delete);
    canvas.type(QStringLiteral("x"));
    EXPECT_EQ(canvas.model.blocks().size(), 1U);
    canvas.press(Qt::Key_Escape);
    EXPECT_EQ(container(block).position(), QPointF(0, 0));
    EXPECT_FALSE(canvas.view->isGestureRunning());
    canvas.moveTo(kOrigin + QPointF(250, 60));
    canvas.up();
    EXPECT_EQ(block->xPosition(), 0);
    EXPECT_TRUE(block->isSelected()) << "that Escape was the gesture's";
    EXPECT_FALSE(canvas.model.canUndo());
}

TEST_F(CanvasGestures, HandlesStandAtTheOnlySelectedBlockAtEveryZoom) {
    EXPECT_FALSE(chrome()->areHandlesShown());
    const BlockPtr block = addSelected(BlockType::image, {0, 0, 100, 80});
    EXPECT_TRUE(chrome()->areHandlesShown());
    EXPECT_EQ(chrome()->bottomRight(), kOrigin + QPointF(104, 84));
    canvas.view->resetZoom();
    canvas.wheel(kOrigin, {0, 100'000}, Qt::ControlModifier);
    EXPECT_EQ(chrome()->bottomRight(), kOrigin + QPointF(304, 244));
    canvas.view->resetZoom();
    canvas.model.setActiveTool(CanvasTool::Kind::pencil);
    EXPECT_FALSE(chrome()->areHandlesShown());
    canvas.model.setActiveTool(CanvasTool::Kind::select);
    const BlockPtr other = canvas.add(BlockType::image, {200, 0, 100, 80});
    canvas.model.selectAll();
    EXPECT_FALSE(chrome()->areHandlesShown());
    EXPECT_TRUE(chrome()->groupFrame().contains(QRectF(400, 300, 300, 80)));
    const QRectF before = chrome()->groupFrame();
    canvas.press(Qt::Key_Right);
    EXPECT_EQ(chrome()->groupFrame(), before.translated(2, 0));

    canvas.model.selectOnly(block);
    canvas.drag(chrome()->bottomRight(), chrome()->bottomRight() + QPointF(30, 20));
    EXPECT_EQ(container(block).size(), QSizeF(130, 100));
    canvas.drag(chrome()->rotationHandle(), chrome()->rotationHandle() + QPointF(90, 0));
    EXPECT_EQ(container(block).rotation(), 45);
}

TEST_F(CanvasGestures, TheMiddleButtonAndABlankHeldPan) {
    const BlockPtr block = canvas.add(BlockType::image, {0, 0, 100, 80});
    canvas.hold(Qt::Key_Space, QStringLiteral(" "));
    EXPECT_EQ(canvas.view->cursor().shape(), Qt::OpenHandCursor);
    canvas.drag(kOrigin + QPointF(50, 40), kOrigin + QPointF(80, 50));
    canvas.letGo(Qt::Key_Space);
    EXPECT_EQ(canvas.view->viewport().offset(), QPointF(30, 10));
    EXPECT_EQ(block->xPosition(), 0);
    canvas.press(Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
    EXPECT_EQ(canvas.model.blocks().size(), 1U) << "a blank alone is no note";
    canvas.drag({100, 100}, {70, 90}, Qt::MiddleButton);
    EXPECT_EQ(canvas.view->viewport().offset(), QPointF(0, 0));
}

TEST_F(CanvasGestures, WhatIsDraggedIsSeenWhereItIsDrawn) {
    const BlockPtr block = canvas.add(BlockType::image, {0, 0, 100, 80});
    const BlockPtr far = canvas.add(BlockType::image, {700, 0, 100, 80});
    canvas.model.selectAll();
    canvas.down(kOrigin + QPointF(50, 40));
    canvas.moveTo(kOrigin + QPointF(80, 40));
    ASSERT_FALSE(canvas.containers().contains(far.get()));
    canvas.moveTo(kOrigin + QPointF(-350, 40));
    ASSERT_TRUE(canvas.containers().contains(far.get()));
    EXPECT_EQ(container(far).mapToScene({0, 0}).x(), 700);
    // Away under the pointer, so far that the places where both of them were are out of sight.
    canvas.wheel({300, 300}, {-4000, 0});
    canvas.settle();
    canvas.moveTo(kOrigin + QPointF(90, 40));
    ASSERT_TRUE(canvas.containers().contains(block.get()));
    EXPECT_EQ(container(block).mapToScene({0, 0}).x(), 400 + 40);
    canvas.up();
    canvas.settle();
    EXPECT_EQ(far->xPosition() - block->xPosition(), 700);

    const BlockPtr nudged = addSelected(BlockType::image, {-10'000, 0, 100, 80});
    nudged->setXPosition(canvas.view->viewport().visibleRect().left() - 310);
    canvas.model.refreshBlocks();
    ASSERT_FALSE(canvas.containers().contains(nudged.get()));
    canvas.press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_TRUE(std::ranges::count(canvas.model.visibleBlocks(), nudged) == 1);
}

TEST_F(CanvasGestures, ARightClickAsksForTheMenuOfWhatItHits) {
    std::vector<std::pair<QPointF, Block *>> requests;
    QObject::connect(canvas.view.get(), &InfiniteCanvasView::contextMenuRequested, canvas.view.get(),
                     [&](QPointF at, Block *block) { requests.emplace_back(at, block); });
    const BlockPtr first = canvas.add(BlockType::image, {0, 0, 100, 80});
    const BlockPtr second = canvas.add(BlockType::image, {150, 0, 100, 80});
    const auto rightClick = [this](QPointF at) {
        canvas.down(at, Qt::RightButton);
        canvas.up();
        canvas.press(Qt::Key_Escape); // The menu that opens now would be in the way.
    };
    rightClick(kOrigin + QPointF(10, 10));
    EXPECT_THAT(canvas.model.selectedBlocks(), ElementsAre(first));
    canvas.model.selectAll();
    rightClick(kOrigin + QPointF(160, 10));
    EXPECT_EQ(canvas.model.selectionCount(), 2) << "a selection stays whole";
    rightClick({100, 120});
    EXPECT_EQ(canvas.model.rightClickCursorPos(), QPointF(-300, -180));
    EXPECT_THAT(requests, ElementsAre(std::pair(kOrigin + QPointF(10, 10), first.get()),
                                      std::pair(kOrigin + QPointF(160, 10), second.get()),
                                      std::pair(QPointF(100, 120), static_cast<Block *>(nullptr))));
    canvas.model.selectOnly(second);
    canvas.press(Qt::Key_Menu);
    canvas.press(Qt::Key_Escape);
    canvas.press(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_EQ(requests.size(), 5U);
    EXPECT_EQ(requests.back(), std::pair(kOrigin + QPointF(200, 40), second.get()));
    EXPECT_EQ(canvas.model.rightClickCursorPos(), QPointF(200, 40));
}

TEST_F(CanvasGestures, APenDrawsWithItsPressureWhileAFingerMovesThePaper) {
    canvas.model.setActiveTool(CanvasTool::Kind::pencil);
    canvas.model.setToolLocked(true);
    canvas.stroke({{{100, 100}, 0.2}, {{150, 120}, 0.5}, {{200, 100}, 0.9}});
    ASSERT_EQ(canvas.model.blocks().size(), 1U);
    const std::vector<SketchStroke> strokes = canvas.model.blocks().front()->sketchStrokes();
    ASSERT_EQ(strokes.size(), 1U);
    ASSERT_GE(strokes[0].points.size(), 3U);
    EXPECT_NEAR(strokes[0].points.front().pressure, 0.2, 0.01);
    EXPECT_NEAR(strokes[0].points.back().pressure, 0.9, 0.01);
    canvas.touch({{{300, 300}}, {{330, 310}}, {{340, 340}}});
    EXPECT_EQ(canvas.view->viewport().offset(), QPointF(40, 40));
    EXPECT_EQ(canvas.model.blocks().size(), 1U);
}

TEST_F(CanvasGestures, FingersTapPanAndPinch) {
    const BlockPtr block = canvas.add(BlockType::image, {0, 0, 100, 80});
    canvas.touch({{kOrigin + QPointF(50, 40)}});
    EXPECT_TRUE(block->isSelected());
    canvas.touch({{{100, 100}}, {{150, 130}}});
    EXPECT_EQ(canvas.view->viewport().offset(), QPointF(50, 30));
    const QPointF under = canvas.view->viewport().toCanvas({300, 200});
    canvas.touch({{{250, 200}, {350, 200}}, {{230, 220}, {370, 220}}, {{200, 240}, {400, 240}}});
    EXPECT_NEAR(canvas.view->zoom(), 2, 1e-6);
    EXPECT_NEAR(canvas.view->viewport().toScreen(under).x(), 300, 1e-6);
    EXPECT_NEAR(canvas.view->viewport().toScreen(under).y(), 240, 1e-6);
    EXPECT_EQ(block->xPosition(), 0);
}

TEST_F(CanvasGestures, FingersThatComeAndGoLeaveThePaperWhereItIs) {
    using enum QEventPoint::State;
    const auto offset = [this] { return canvas.view->viewport().offset(); };
    canvas.fingers({{0, {100, 100}, Pressed}});
    canvas.fingers({{0, {150, 130}, Updated}});
    canvas.fingers({{0, {150, 130}, Stationary}, {1, {250, 130}, Pressed}});
    EXPECT_EQ(offset(), QPointF(50, 30)) << "the pan stays";
    canvas.fingers({{0, {150, 130}, Updated}, {1, {270, 150}, Updated}});
    const double zoom = canvas.view->zoom();
    EXPECT_GT(zoom, 1);
    const QPointF zoomed = offset();
    canvas.fingers({{0, {150, 130}, Released}, {1, {270, 150}, Stationary}});
    canvas.fingers({{1, {290, 150}, Updated}});
    EXPECT_EQ(offset(), zoomed + QPointF(20, 0)) << "the finger that stays moves on";
    canvas.fingers({{1, {290, 150}, Stationary}, {2, {600, 500}, Pressed}});
    canvas.fingers({{1, {290, 150}, Stationary}, {2, {600, 500}, Stationary}, {3, {500, 100}, Pressed}});
    canvas.fingers({{1, {290, 150}, Released}, {2, {600, 500}, Stationary}, {3, {500, 100}, Stationary}});
    canvas.fingers({{2, {600, 500}, Updated}, {3, {500, 100}, Updated}});
    EXPECT_EQ(offset(), zoomed + QPointF(20, 0)) << "others than before";
    canvas.fingers({{2, {600, 500}, Released}, {3, {500, 100}, Released}});
    EXPECT_EQ(canvas.view->zoom(), zoom);
    EXPECT_FALSE(canvas.view->isGestureRunning());
}

TEST_F(CanvasGestures, WhatIsUnderWayEndsWhenTheCardTurnsOrTheReleaseIsLost) {
    const BlockPtr block = canvas.add(BlockType::image, {0, 0, 100, 80});
    const std::function<void()> ends[] = {
        [this] { canvas.notifications.post(events::flipReversing); },
        [this] {
            canvas.moveTo({500, 100});
        },
        [this] {
            canvas.click({100, 100});
        },
    };
    for (const auto &end : ends) {
        canvas.down(kOrigin + QPointF(50, 40));
        canvas.moveTo(kOrigin + QPointF(150, 60));
        EXPECT_EQ(container(block).position(), QPointF(100, 20));
        canvas.loseRelease();
        end();
        EXPECT_EQ(container(block).position(), QPointF(0, 0));
        canvas.moveTo({300, 400});
        EXPECT_EQ(container(block).position(), QPointF(0, 0)) << "it does not hang on the pointer";
        canvas.click({100, 100});
        EXPECT_FALSE(block->isSelected());
        canvas.click(kOrigin + QPointF(50, 40));
        EXPECT_TRUE(block->isSelected()) << "the next press counts";
    }
    EXPECT_FALSE(canvas.model.canUndo());

    canvas.model.setActiveTool(CanvasTool::Kind::pencil);
    canvas.down({100, 100});
    canvas.moveTo({200, 150});
    canvas.notifications.post(events::flipReversing);
    EXPECT_EQ(canvas.model.blocks().size(), 2U) << "what is drawn so far stays";
    EXPECT_TRUE(canvas.model.canUndo());
    EXPECT_EQ(canvas.model.activeTool().kind(), CanvasTool::Kind::select);

    canvas.down({100, 300}, Qt::RightButton);
    canvas.up();
    const auto *menu = canvas.view->findChild<ContextMenuView *>();
    EXPECT_TRUE(menu->entries());
    canvas.notifications.post(events::flipReversing);
    EXPECT_FALSE(menu->entries());
    EXPECT_TRUE(canvas.view->hasActiveFocus());
}

TEST_F(CanvasGestures, AResizedSketchStaysWhereItWasDrawn) {
    canvas.model.setActiveTool(CanvasTool::Kind::pencil);
    canvas.drag({400, 300}, {500, 400});
    const BlockPtr sketch = canvas.model.blocks().front();
    const auto drawn = [&] {
        canvas.settle();
        auto *strokes = container(sketch).findChild<PathDrawingItem *>();
        qobject_cast<BlockBody *>(strokes->parentItem())->ensurePolished();
        return strokes->mapRectToScene(strokes->drawing().bounds());
    };
    const QRectF before = drawn();
    canvas.drag(chrome()->bottomRight(), chrome()->bottomRight() + QPointF(30, 20));
    const QPointF corner = kOrigin + QPointF(sketch->xPosition() - 4, sketch->yPosition() - 4);
    canvas.drag(corner, corner + QPointF(-60, -40));
    EXPECT_EQ(kOrigin.x() + sketch->xPosition(), corner.x() + 4 - 60);
    EXPECT_EQ(drawn(), before);
    canvas.view->jumpTo({5'000, 0});
    canvas.settle();
    canvas.view->jumpTo({0, 0});
    EXPECT_EQ(drawn(), before);
    canvas.model.undo();
    EXPECT_EQ(drawn(), before);
    canvas.drag(before.center(), before.center() + QPointF(50, 10));
    EXPECT_EQ(drawn(), before.translated(50, 10));
}

TEST_F(CanvasGestures, AFingerThatRestsAsksForTheMenu) {
    const BlockPtr block = canvas.add(BlockType::image, {0, 0, 100, 80});
    std::vector<Block *> requests;
    QObject::connect(canvas.view.get(), &InfiniteCanvasView::contextMenuRequested, canvas.view.get(),
                     [&](QPointF, Block *asked) { requests.push_back(asked); });
    const QPointF onBlock = kOrigin + QPointF(50, 40);
    canvas.touch({{onBlock}, {onBlock + QPointF(1, 1)}}, 499ms);
    EXPECT_TRUE(requests.empty()) << "left too early";
    canvas.touch({{onBlock}, {onBlock + QPointF(40, 0)}}, 1s);
    EXPECT_TRUE(requests.empty()) << "went on";
    canvas.touch({{{100, 100}, {200, 100}}}, 1s);
    EXPECT_TRUE(requests.empty());
    const double x = block->xPosition();
    canvas.touch({{onBlock + QPointF(40, 0)}, {onBlock + QPointF(41, 1)}}, 500ms);
    EXPECT_EQ(requests, std::vector<Block *>{block.get()});
    EXPECT_EQ(block->xPosition(), x);
}

TEST_F(CanvasGestures, DroppedPicturesLieWhereTheyAreDropped) {
    const test::TemporaryFolder folder;
    const QString path = folder.path() + QStringLiteral("/picture.png");
    QImage picture(200, 100, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    ASSERT_TRUE(picture.save(path));
    canvas.drop(kOrigin + QPointF(30, 40), {QUrl::fromLocalFile(path)});
    ASSERT_TRUE(test::waitUntil([this] { return canvas.model.blocks().size() == 1; }));
    const Block &block = *canvas.model.blocks().front();
    EXPECT_EQ(block.blockType(), BlockType::image);
    EXPECT_EQ(QPointF(block.xPosition(), block.yPosition()), QPointF(-70, -10));
}

TEST_F(CanvasGestures, ANewBlockGrowsUnlessMovementIsUnwanted) {
    struct : MotionPreference {
        bool isReduced = false;
        [[nodiscard]] bool prefersReducedMotion() const override { return isReduced; }
    } motion;
    canvas.view->setMotionPreference(&motion);
    const BlockPtr grown = canvas.model.spawnShape({0, 0}, ShapeType::circle);
    EXPECT_LT(container(grown).scale(), 1);
    motion.isReduced = true;
    const BlockPtr faded = canvas.model.spawnShape({0, 0}, ShapeType::circle);
    EXPECT_EQ(container(faded).scale(), 1);
    EXPECT_LT(container(faded).opacity(), 1);
    canvas.view->setMotionPreference(nullptr);
}

TEST_F(CanvasGestures, ATextThatWasMadeLargerStaysSoWhenItComesBackIntoView) {
    const BlockPtr text = canvas.add(BlockType::text, {0, 0, 300, 200}, QStringLiteral("words"));
    canvas.settle();
    EXPECT_EQ(text->height(), 24);
    canvas.model.selectOnly(text);
    canvas.drag(chrome()->bottomRight(), chrome()->bottomRight() + QPointF(60, 40));
    const QSizeF made(text->width(), text->height());
    EXPECT_EQ(made, QSizeF(160, 64));
    canvas.view->jumpTo({5'000, 0});
    canvas.settle();
    EXPECT_TRUE(canvas.containers().empty());
    canvas.view->jumpTo({0, 0});
    canvas.settle();
    EXPECT_EQ(QSizeF(text->width(), text->height()), made);
    EXPECT_TRUE(canvas.view->offset().isNull());
}

} // namespace

} // namespace tallowby
