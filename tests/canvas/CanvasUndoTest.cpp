#include "canvas/CanvasFixture.h"

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
    model.selectAll();
    model.deleteSelected();
    undoAll();
    EXPECT_TRUE(model.isEmpty());
    while (model.canRedo()) {
        model.redo();
    }
    EXPECT_TRUE(model.isEmpty());
    EXPECT_EQ(storage.blocks().size(), 2U);
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
}

TEST_F(CanvasUndo, EveryStepGoesBackToTheSceneBeforeItAndForthAgain) {
    for (const unsigned seed : {1U, 2U, 3U}) {
        std::mt19937 dice(seed);
        while (model.canUndo()) {
            model.undo();
        }
        const BlockPtr base = add(BlockType::stickyNote, {0, 0, 200, 200});
        // The scene after each recorded change that stands, and the one that is shown.
        std::vector scenes{scene()};
        // A first change, which ends what an earlier round could redo.
        model.updateRotation(base, 0, 1);
        scenes.push_back(scene());
        std::size_t shown = 1;
        for (int step = 0; step < 300; ++step) {
            const BlockPtr block = model.blocks()[dice() % model.blocks().size()];
            const QPointF from = positionOf(*block);
            const double offset = double(dice() % 100);
            const auto kind = dice() % 9;
            if (kind >= 7) {
                const bool isPossible = kind == 7 ? model.canUndo() : model.canRedo();
                kind == 7 ? model.undo() : model.redo();
                if (isPossible) {
                    shown = kind == 7 ? shown - 1 : shown + 1;
                }
                ASSERT_TRUE(scene() == scenes.at(shown)) << seed << " step " << step << " kind " << kind;
                continue;
            }
            if (model.blocks().size() == 1 && kind == 3) {
                continue;
            }
            switch (kind) {
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
                model.deleteBlock(block);
                break;
            case 4:
                model.spawnShape(from, ShapeType::arrow);
                break;
            case 5:
                draw({{offset, 0}, {0, offset}});
                break;
            default:
                model.selectOnly(block);
                model.moveSelectedBlocks(offset, 2);
            }
            scenes.resize(shown + 1);
            scenes.push_back(scene());
            ++shown;
        }
        const std::size_t newest = shown;
        while (model.canUndo()) {
            model.undo();
            ASSERT_TRUE(scene() == scenes.at(--shown)) << seed << " back to " << shown;
        }
        while (model.canRedo() && shown < newest) {
            model.redo();
            ASSERT_TRUE(scene() == scenes.at(++shown)) << seed << " forth to " << shown;
        }
    }
}

} // namespace

} // namespace tallowby
