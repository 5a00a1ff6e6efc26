#include "canvas/model/CanvasViewModel.h"
#include "platform/AppEvents.h"
#include "storage/BlockStorage.h"
#include "storage/DebouncedSaver.h"
#include "support/FakePasteboard.h"
#include "support/LogCapture.h"
#include "support/VirtualScheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tallowby {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct CanvasModel : testing::Test {
    BlockPtr add(BlockType type, const QRectF &frame, qint64 zIndex = 0) {
        auto block = std::make_shared<Block>(QUuid(), type, frame);
        block->setZIndex(zIndex);
        storage.insert(block);
        model.refreshBlocks();
        return block;
    }
    BlockPtr type(const QString &text, QPointF at = {}) {
        BlockPtr block = model.spawnBlock(at, BlockType::text, text);
        model.endEditing();
        return block;
    }

    test::LogCapture log;
    test::VirtualScheduler scheduler;
    BlockStorage storage{scheduler, std::nullopt};
    DebouncedSaver saver{scheduler, storage};
    NotificationCenter notifications;
    test::FakePasteboard pasteboard;
    CanvasViewModel model{storage, saver, notifications, scheduler, pasteboard};
};

TEST_F(CanvasModel, SpawnsATextBlockAroundThePoint) {
    const QUuid user = QUuid::createUuid();
    storage.setCurrentUserId(user);
    const BlockPtr old = type(QStringLiteral("old"));
    model.selectOnly(old);

    const BlockPtr block = model.spawnBlock({200, 100}, BlockType::text, QStringLiteral("a"));
    EXPECT_EQ(QPointF(block->xPosition(), block->yPosition()), QPointF(150, 88));
    EXPECT_EQ(QSizeF(block->width(), block->height()), QSizeF(100, 24));
    EXPECT_EQ(block->zIndex(), 2);
    EXPECT_EQ(block->userId(), user);
    EXPECT_TRUE(block->needsSync());
    EXPECT_THAT(model.selectedBlocks(), ElementsAre(block));
    EXPECT_FALSE(old->isSelected());
    EXPECT_EQ(model.focusedBlockId(), block->id());
    EXPECT_TRUE(model.isAnyBlockEditing());
    EXPECT_THAT(model.visibleBlocks(), ElementsAre(old, block));
    EXPECT_EQ(storage.findById(block->id()), block);
}

TEST_F(CanvasModel, DepthNeverOverflows) {
    add(BlockType::shape, {0, 0, 10, 10}, std::numeric_limits<qint64>::max());
    test::VirtualScheduler clock;
    CanvasViewModel later(storage, saver, notifications, clock, pasteboard);
    const BlockPtr above = later.spawnBlock({}, BlockType::text, QStringLiteral("x"));
    EXPECT_EQ(above->zIndex(), std::numeric_limits<qint64>::max());
    EXPECT_EQ(later.blocks().back(), above);
}

TEST_F(CanvasModel, BringsToFrontOnce) {
    const BlockPtr bottom = add(BlockType::shape, {0, 0, 10, 10});
    model.bringToFront(bottom);
    EXPECT_EQ(bottom->zIndex(), 1);
    model.bringToFront(bottom);
    EXPECT_EQ(bottom->zIndex(), 1);
    const BlockPtr top = type(QStringLiteral("top"));
    model.bringToFront(bottom);
    EXPECT_THAT(model.blocks(), ElementsAre(top, bottom));
    EXPECT_THAT(model.visibleBlocks(), ElementsAre(top, bottom));
    EXPECT_TRUE(bottom->needsSync());
}

TEST_F(CanvasModel, TypingIsStampedMarkedAndSavedSoonAfter) {
    const BlockPtr block = model.spawnBlock({}, BlockType::text, QStringLiteral("a"));
    scheduler.advance(std::chrono::seconds(5));
    block->setNeedsSync(false);
    int requests = 0;
    storage.setSyncTrigger([&requests] { ++requests; });

    model.setText(*block, QStringLiteral("ab"));
    model.setText(*block, QStringLiteral("abc"));
    EXPECT_EQ(block->rawTextOrEmpty(), QStringLiteral("abc"));
    EXPECT_TRUE(block->needsSync());
    EXPECT_EQ(block->updatedAt(), Timestamp::from(scheduler.now()));
    EXPECT_EQ(requests, 0);
    scheduler.advance(DebouncedSaver::kDebounceInterval);
    EXPECT_EQ(requests, 1) << "one request for a burst";
}

TEST_F(CanvasModel, AnEmptyTextIsGoneWhenEditingEnds) {
    int editingChanges = 0;
    QObject::connect(&model, &CanvasViewModel::isAnyBlockEditingChanged, [&editingChanges] { ++editingChanges; });
    const BlockPtr empty = model.spawnBlock({}, BlockType::text, QStringLiteral("x"));
    model.setText(*empty, QStringLiteral(" \n"));
    model.endEditing();
    EXPECT_FALSE(empty->isLive());
    EXPECT_TRUE(empty->needsSync()) << "a copy elsewhere has to go, too";
    EXPECT_TRUE(model.isEmpty());
    EXPECT_THAT(model.selectedBlocks(), IsEmpty());
    EXPECT_EQ(editingChanges, 2);

    const BlockPtr first = model.spawnBlock({}, BlockType::text, {});
    const BlockPtr second = model.spawnBlock({}, BlockType::text, QStringLiteral("kept"));
    EXPECT_FALSE(first->isLive()) << "the next block ends the editing of the one before";
    EXPECT_THAT(model.blocks(), ElementsAre(second));
}

TEST_F(CanvasModel, DeletesSoftlyAndLetsGoOfTheFocus) {
    const BlockPtr kept = type(QStringLiteral("kept"));
    const BlockPtr edited = model.spawnBlock({}, BlockType::text, QStringLiteral("edited"));
    model.deleteBlock(edited);
    EXPECT_TRUE(edited->deletedAt().has_value());
    EXPECT_FALSE(model.isAnyBlockEditing());
    EXPECT_THAT(model.blocks(), ElementsAre(kept));

    model.selectAll();
    model.deleteSelected();
    EXPECT_TRUE(model.isEmpty());
    EXPECT_THAT(model.visibleBlocks(), IsEmpty());
    EXPECT_EQ(storage.blocks().size(), 2U) << "the deletion still has to reach the other devices";
}

TEST_F(CanvasModel, DeselectingEverythingByNotificationEndsEditing) {
    const BlockPtr block = model.spawnBlock({}, BlockType::text, QStringLiteral("a"));
    notifications.post(events::deselectAllBlocks);
    EXPECT_FALSE(model.isAnyBlockEditing());
    EXPECT_FALSE(block->isSelected());
    model.spawnBlock({}, BlockType::text, {});
    notifications.post(events::flipReversing);
    EXPECT_FALSE(model.isAnyBlockEditing());
    EXPECT_EQ(model.blocks().size(), 1U) << "an empty text is not left behind";
}

TEST_F(CanvasModel, ShowsWhatTheWidenedViewportMeets) {
    const BlockPtr inside = add(BlockType::shape, {0, 0, 50, 50});
    const BlockPtr unmeasured = add(BlockType::text, {-299, 0, 0, 0});
    const BlockPtr beyond = add(BlockType::text, {-301, 0, 0, 0});
    const BlockPtr enormous = add(BlockType::shape, {-1e300, -1e300, 1.7e308, 1.7e308});
    EXPECT_EQ(model.visibleBlocks().size(), 4U) << "no viewport was told yet";

    model.updateVisibleBlocks({0, 0, 800, 600}, 1.0);
    EXPECT_THAT(model.visibleBlocks(), ElementsAre(inside, unmeasured, enormous));
    model.updateVisibleBlocks({0, 0, 800, 600}, 0.5);
    EXPECT_EQ(model.visibleBlocks().size(), 4U) << "the margin is one of the screen";

    model.beginEditing(unmeasured);
    model.setText(*unmeasured, QStringLiteral("still typing"));
    model.updateVisibleBlocks({50'000, 0, 800, 600}, 1.0);
    EXPECT_THAT(model.visibleBlocks(), ElementsAre(enormous, unmeasured)) << "typing goes on out of sight";
    model.endEditing();
    model.selectOnly(inside);
    model.moveSelectedBlocks(50'100, 0);
    model.updateVisibleBlocks({50'000, 0, 800, 600}, 1.0);
    EXPECT_THAT(model.visibleBlocks(), ElementsAre(inside, enormous)) << "found where it was moved to";
}

TEST_F(CanvasModel, RefreshKeepsSelectionFocusAndTheViewport) {
    const BlockPtr lower = type(QStringLiteral("lower"));
    const BlockPtr upper = model.spawnBlock({}, BlockType::text, QStringLiteral("upper"));
    model.updateVisibleBlocks({-400, -300, 800, 600}, 1.0);
    lower->setZIndex(9);
    add(BlockType::shape, {9'000, 0, 10, 10}, 4);
    EXPECT_THAT(model.visibleBlocks(), ElementsAre(upper, lower));
    EXPECT_EQ(model.blocks().size(), 3U);
    EXPECT_THAT(model.selectedBlocks(), ElementsAre(upper));
    EXPECT_EQ(model.focusedBlock(), upper);

    upper->setDeletedAt(Timestamp{1});
    model.refreshBlocks();
    EXPECT_FALSE(model.isAnyBlockEditing());
}

TEST_F(CanvasModel, FindsTheTopmostBlockUnderAPointTurnedOnesIncluded) {
    const BlockPtr lower = add(BlockType::shape, {0, 0, 200, 20}, 1);
    const BlockPtr upper = add(BlockType::shape, {150, 0, 100, 20}, 2);
    EXPECT_EQ(model.blockAt({160, 10}), upper);
    EXPECT_EQ(model.blockAt({20, 10}), lower);
    EXPECT_EQ(model.blockAt({20, 60}), nullptr);
    lower->setRotation(90);
    EXPECT_EQ(model.blockAt({100, 80}), lower);
    EXPECT_EQ(model.blockAt({20, 10}), nullptr);
}

} // namespace

} // namespace tallowby
