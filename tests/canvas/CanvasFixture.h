#pragma once

#include "canvas/model/CanvasViewModel.h"
#include "storage/BlockStorage.h"
#include "storage/DebouncedSaver.h"
#include "support/FakePasteboard.h"
#include "support/LogCapture.h"
#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

namespace tallowby::test {

/// A canvas model without a window, with a store that keeps nothing.
struct CanvasFixture : testing::Test {
    /// Puts a block on the canvas as if it had been in the file.
    BlockPtr add(BlockType type, const QRectF &frame, qint64 zIndex = 0) {
        auto block = std::make_shared<Block>(QUuid(), type, frame);
        block->setZIndex(zIndex);
        storage.insert(block);
        model.refreshBlocks();
        return block;
    }
    /// Types a text anywhere and clicks beside it.
    BlockPtr type(const QString &text, QPointF at = {}) {
        BlockPtr block = model.spawnBlock(at, BlockType::text, text);
        model.endEditing();
        return block;
    }
    /// Draws one stroke with the pencil.
    BlockPtr draw(const std::vector<SketchPoint> &points) {
        BlockPtr block = model.beginSketch({points.front().x, points.front().y});
        model.commitStroke(block, points, model.pencilColor(), model.pencilWidth());
        model.registerAction(AddAction{block});
        return block;
    }
    static QPointF positionOf(const Block &block) { return {block.xPosition(), block.yPosition()}; }
    static QRectF frame(const Block &block) {
        return {block.xPosition(), block.yPosition(), block.width(), block.height()};
    }

    LogCapture log;
    VirtualScheduler scheduler;
    BlockStorage storage{scheduler, std::nullopt};
    DebouncedSaver saver{scheduler, storage};
    NotificationCenter notifications;
    FakePasteboard pasteboard;
    CanvasViewModel model{storage, saver, notifications, scheduler, pasteboard};
};

} // namespace tallowby::test
