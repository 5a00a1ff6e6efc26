#include "canvas/CanvasFixture.h"

#include "canvas/model/UndoGroup.h"
#include "model/BlockRecordWriter.h"
#include "model/TimestampCoding.h"

#include <gmock/gmock.h>

#include <map>
#include <random>

namespace tallowby {

namespace {

using testing::ElementsAre;

struct CanvasUndo : test::CanvasFixture {
    int undoAll() {
        int steps = 0;
        for (; model.canUndo(); ++steps) {
            model.undo();
        }
        return steps;
    }
    /// What a person would notice of each live block: everything but the stamp.
    std::map<QUuid, std::string> scene() const {
        std::map<QUuid, std::string> records;
        for (const BlockPtr &block : model.blocks()) {
            SharedBlockFields fields = block->fields();
            fields->updatedAt = {};
            BlockRecordWriter writer(kFileTimestamps);
            EXPECT_FALSE(writer.write(*fields));
            records[block->id()] = writer.text();
        }
        return records;
    }
    /// Makes one change of any kind that is recorded.
    void change(std::mt19937 &dice) {
        const BlockPtr block = model.blocks()[dice() % model.blocks().size()];
        const QPointF from = positionOf(*block);
        const double offset = double(dice() % 100);
        switch (model.blocks().size() == 1 ? dice() % 6 : dice() % 7) {
        case 0:
            model.updatePosition(block, from, from + QPointF(offset, -offset));
            break;
        case 1:
            model.updateRotation(block, block->rotation(), offset);
            break;
        case 2:
            model.commitTransform(block, frame(*block), {from, QSizeF(50.5 + offset, 40 + offset)});
            break;
        case 3:
            model.spawnShape(from, ShapeType::arrow);
            break;
        case 4:
            draw({{offset, 0}, {0, offset}});
            break;
        case 5:
            model.selectOnly(block);
            model.moveSelectedBlocks(offset, 2);
            break;
        default:
            model.deleteBlock(block);
        }
    }
};

TEST_F(CanvasUndo, KeepsFiftyChangesAndForgetsWhatCouldBeRedone) {
    const BlockPtr block = add(BlockType::shape, {0, 0, 10, 10});
    for (int step = 0; step < 51; ++step) {
        model.updatePosition(block, QPointF(step, 0), QPointF(step + 1, 0));
    }
    EXPECT_EQ(undoAll(), 50);
    EXPECT_EQ(block->xPosition(), 1);
    model.undo();
    model.redo();
    EXPECT_TRUE(model.canRedo());
    EXPECT_EQ(block->xPosition(), 2);
    model.updateRotation(block, 0, 30);
    EXPECT_FALSE(model.canRedo());
    model.redo();
    EXPECT_EQ(block->rotation(), 30);
}

TEST_F(CanvasUndo, EachKindOfChangeGoesBackAndForth) {
    const BlockPtr block = add(BlockType::shape, {0, 0, 100, 100});
    const auto stamp = block->updatedAt();
    const auto expectBackAndForth = [&](const QRectF &before, const QRectF &after) {
        block->setNeedsSync(false);
        model.undo();
        EXPECT_EQ(frame(*block), before);
        EXPECT_TRUE(block->needsSync());
        model.redo();
        EXPECT_EQ(frame(*block), after);
    };
    model.registerAction(ResizeAction{block, {100, 100}, {50, 60}});
    model.undo();
    model.redo();
    EXPECT_EQ(frame(*block), QRectF(0, 0, 50, 60));
    EXPECT_EQ(block->updatedAt(), stamp) << "taking back is no edit";
    model.commitTransform(block, {0, 0, 50, 60}, {10, 10, 40, 50});
    expectBackAndForth({0, 0, 50, 60}, {10, 10, 40, 50});
    model.commitTransform(block, {10, 10, 40, 50}, {10, 10, 40, 50});
    expectBackAndForth({0, 0, 50, 60}, {10, 10, 40, 50});

    model.selectAll();
    const BlockPtr second = model.spawnShape({500, 500}, ShapeType::circle);
    model.selectAll();
    model.moveSelectedBlocks(2, 0);
    model.undo();
    EXPECT_EQ(positionOf(*second), QPointF(440, 460));
    EXPECT_EQ(positionOf(*block), QPointF(12, 10)) << "one step a block";
    model.undo();
    EXPECT_EQ(positionOf(*block), QPointF(10, 10));
}

TEST_F(CanvasUndo, DeletionsComeBackOnceAtTheirDepth) {
    const BlockPtr lower = model.spawnShape({}, ShapeType::circle);
    const BlockPtr upper = model.spawnShape({}, ShapeType::circle);
    int resets = 0;
    QObject::connect(&model, &CanvasViewModel::cursorResetRequested, [&resets] { ++resets; });
    model.deleteBlock(lower);
    model.deleteBlock(lower);
    EXPECT_EQ(resets, 1);
    lower->setNeedsSync(false);
    model.undo();
    EXPECT_THAT(model.blocks(), ElementsAre(lower, upper));
    EXPECT_TRUE(lower->isLive() && lower->needsSync());
    EXPECT_EQ(storage.blocks().size(), 2U);
    model.deleteBlock(upper);
    model.handlePaste({});
    model.undo();
    const BlockPtr above = model.spawnShape({}, ShapeType::circle);
    EXPECT_THAT(model.blocks(), ElementsAre(lower, upper, above));
    EXPECT_GT(above->zIndex(), upper->zIndex()) << "though the paste has counted the blocks without that one";
    upper->setZIndex(above->zIndex());
    model.bringToFront(upper);
    EXPECT_THAT(model.blocks(), ElementsAre(lower, above, upper)) << "of two that share the top";
    model.deleteBlock(above);
    model.selectAll();
    model.deleteSelected();
    undoAll();
    EXPECT_TRUE(model.isEmpty());
    while (model.canRedo()) {
        model.redo();
    }
    EXPECT_TRUE(model.isEmpty());
    EXPECT_EQ(storage.blocks().size(), 3U);
}

TEST_F(CanvasUndo, TypingIsOneStepAndAnEmptiedTextOneDeletion) {
    const BlockPtr block = model.spawnBlock({}, BlockType::text, u"h"_qs);
    model.setText(*block, u"hello"_qs);
    model.undo();
    EXPECT_FALSE(model.isAnyBlockEditing());
    EXPECT_EQ(block->rawTextOrEmpty(), u"h"_qs) << "the typing is recorded first, then taken back";
    model.redo();
    model.beginEditing(block);
    model.endEditing();
    model.beginEditing(block);
    model.setText(*block, u" "_qs);
    model.endEditing();
    EXPECT_TRUE(model.isEmpty());
    model.undo();
    EXPECT_EQ(block->rawTextOrEmpty(), u"hello"_qs) << "not an empty block";
    model.undo();
    model.undo();
    EXPECT_TRUE(model.isEmpty());

    const BlockPtr stray = model.spawnBlock({}, BlockType::text, u"x"_qs);
    model.setText(*stray, {});
    model.endEditing();
    EXPECT_FALSE(model.canUndo()) << "a stray key leaves nothing behind";

    const BlockPtr typed = model.spawnBlock({}, BlockType::text, u"h"_qs);
    model.setText(*typed, u"hello"_qs);
    model.endEditing();
    model.beginEditing(typed);
    model.setText(*typed, u"hello again"_qs);
    model.undoGesture();
    EXPECT_EQ(typed->rawTextOrEmpty(), u"hello"_qs);
    model.undoGesture();
    EXPECT_TRUE(model.isEmpty()) << "the first typing goes with its note";
    model.redoGesture();
    EXPECT_EQ(typed->rawTextOrEmpty(), u"hello"_qs);
    EXPECT_TRUE(typed->isLive());
}

TEST_F(CanvasUndo, AGestureComesBackWholeHoweverLargeWithOneLook) {
    int looks = 0;
    QObject::connect(&model, &CanvasViewModel::cullingRequested, [&looks] { ++looks; });
    for (int i = 0; i < 200; ++i) {
        add(BlockType::shape, {i * 10.0, 0, 10, 10}, i % 7);
    }
    const auto before = scene();
    const auto deleteAll = [this] {
        model.selectAll();
        model.deleteSelected();
    };
    deleteAll();
    model.undoGesture();
    EXPECT_TRUE(scene() == before);
    EXPECT_EQ(looks, 1);
    EXPECT_FALSE(model.canUndo());
    model.redoGesture();
    EXPECT_TRUE(model.isEmpty());
    EXPECT_FALSE(model.canRedo());
    model.spawnShape({}, ShapeType::circle);
    model.undoGesture();
    model.undoGesture();
    EXPECT_TRUE(scene() == before) << "another change has come in between";

    deleteAll();
    EXPECT_EQ(undoAll(), 50) << "as many as the history holds";
    EXPECT_EQ(model.blocks().size(), 50U);
    model.redo();
    model.undoGesture();
    EXPECT_TRUE(scene() == before);
    deleteAll();
    EXPECT_EQ(undoAll(), 50);
    model.spawnShape({}, ShapeType::circle);
    while (model.canUndo()) {
        model.undoGesture();
    }
    EXPECT_EQ(model.blocks().size(), 50U) << "what was taken apart is forgotten with the next change";
}

TEST_F(CanvasUndo, WhatIsTypedIntoANewBlockGoesWithIt) {
    const BlockPtr block = type(u"h"_qs);
    const auto record = [&](const QString &from, const QString &to) {
        const UndoGroup gesture(model, *block);
        model.registerAction(UpdateTextAction{block, from, to});
    };
    record(u"h"_qs, u"hello"_qs);
    const BlockPtr other = model.spawnShape({}, ShapeType::circle);
    record(u"hello"_qs, u"hello world"_qs);
    model.undoGesture();
    EXPECT_EQ(block->rawTextOrEmpty(), u"hello"_qs) << "typed after something else: a gesture of its own";
    model.undoGesture();
    model.undoGesture();
    EXPECT_TRUE(model.isEmpty());
    model.redoGesture();
    model.redoGesture();
    model.updateRotation(other, 0, 30);
    model.undoGesture();
    EXPECT_TRUE(other->isLive()) << "a change after a redo is none of the gesture before it";
}

TEST_F(CanvasUndo, EveryGestureGoesBackToTheSceneBeforeItAndForthAgain) {
    for (const unsigned seed : {1U, 2U, 3U}) {
        std::mt19937 dice(seed);
        while (model.canUndo()) {
            model.undoGesture();
        }
        const BlockPtr base = add(BlockType::stickyNote, {0, 0, 200, 200});
        // The scene after each recorded change that stands, and the one that is shown.
        std::vector scenes{scene()};
        // A first change, which ends what an earlier round could redo.
        model.updateRotation(base, 0, 1);
        scenes.push_back(scene());
        std::size_t shown = 1;
        for (int step = 0; step < 300; ++step) {
            const bool isBack = dice() % 9 < 2;
            const bool isForth = dice() % 9 < 2;
            if (isBack || isForth) {
                const bool isPossible = isBack ? model.canUndo() : model.canRedo();
                isBack ? model.undoGesture() : model.redoGesture();
                if (isPossible) {
                    shown = isBack ? shown - 1 : shown + 1;
                }
                ASSERT_TRUE(scene() == scenes.at(shown)) << seed << " step " << step;
                continue;
            }
            const UndoGroup gesture(model);
            for (auto changes = 1 + dice() % 4; changes > 0; --changes) {
                change(dice);
            }
            scenes.resize(shown + 1);
            scenes.push_back(scene());
            ++shown;
        }
        const std::size_t newest = shown;
        while (model.canUndo()) {
            model.undoGesture();
            ASSERT_TRUE(scene() == scenes.at(--shown)) << seed << " back to " << shown;
        }
        while (model.canRedo() && shown < newest) {
            model.redoGesture();
            ASSERT_TRUE(scene() == scenes.at(++shown)) << seed << " forth to " << shown;
        }
    }
}

} // namespace

} // namespace tallowby
