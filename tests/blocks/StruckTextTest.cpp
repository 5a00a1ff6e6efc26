#include "blocks/CanvasDriver.h"
#include "blocks/text/StruckLines.h"

#include <gtest/gtest.h>

#include <QImage>

#include <algorithm>
#include <cstdlib>

namespace tallowby {

namespace {

using namespace std::chrono_literals;

struct StruckText : testing::Test {
    StruckText() {
        for (int i = 0; i < 3; ++i) {
            lists.push_back(canvas.add(BlockType::checklist, {-390, -280 + 180.0 * i, 220, 120}));
            lists.back()->setContent(R"({"title":"T","items":[{"id":"a","text":"one two three","isDone":true}]})");
        }
        const std::pair<BlockType, QString> kinds[] = {
            {BlockType::text, QStringLiteral("struck out\nin lines")},
            {BlockType::text, QStringLiteral("www https://example.org")},
            {BlockType::text, QStringLiteral("\u05e9\u05dc\u05d5\u05dd www.example.org")},
            {BlockType::text, QStringLiteral("\u05e9\u05dc\u05d5\u05dd \u05e2\u05d5\u05dc\u05dd")},
            {BlockType::stickyNote, QStringLiteral("a note whose text is wrapped into several lines")},
            {BlockType::shape, QStringLiteral("a label")},
        };
        double top = -290;
        for (const auto &[type, text] : kinds) {
            blocks.push_back(canvas.add(type, {-100, top, 150, 100}, text));
            blocks.back()->setIsStrikethrough(true);
            top += 95;
        }
        canvas.settle();
    }

    /// The lines that the body draws, in points of the window.
    QList<QRectF> linesOf(const BlockPtr &block) {
        QList<QRectF> result;
        for (const StruckLines *item : canvas.containers().at(block.get())->findChildren<StruckLines *>()) {
            for (const QRectF &line : item->isVisible() && item->isStruck() ? item->lines() : QList<QRectF>()) {
                result << item->mapRectToScene(line);
            }
        }
        return result;
    }

    test::CanvasDriver canvas;
    std::vector<BlockPtr> lists;
    std::vector<BlockPtr> blocks;
};

/// Whether some row of pixels near the line has one colour from end to end.
bool isDrawn(const QImage &window, const QRectF &line) {
    for (int y = int(line.top()) - 1; y <= int(line.bottom()) + 1; ++y) {
        const QRgb color = window.pixel(int(line.left()) + 1, y);
        int same = 0;
        for (int x = int(line.left()) + 1; x < int(line.right()) - 1; ++x) {
            same += window.pixel(x, y) == color ? 1 : 0;
        }
        const bool isInk = color != window.pixel(int(line.left()) - 3, y);
        if (isInk && same >= int(line.width()) - 3) {
            return true;
        }
    }
    return false;
}

} // namespace

TEST_F(StruckText, HasItsLineAtEveryZoom) {
    for (const int turn : {0, -60, -70, -50, -90, 700}) {
        canvas.wheel({400, 300}, {0, turn}, Qt::ControlModifier);
        canvas.settle();
        canvas.scheduler.advance(1s);
        canvas.settle();
        const QImage drawn = canvas.window.grabWindow();
        int seen = 0;
        for (const auto *group : {&lists, &blocks}) {
            for (const BlockPtr &block : *group) {
                const auto containers = canvas.containers();
                const QList<QRectF> lines = containers.contains(block.get()) ? linesOf(block) : QList<QRectF>();
                for (const QRectF &line : lines) {
                    if (QRectF(10, 10, 780, 580).contains(line)) {
                        ++seen;
                        EXPECT_TRUE(isDrawn(drawn, line)) << canvas.view->zoom() << ' ' << int(block->blockType());
                    }
                }
            }
        }
        EXPECT_GE(seen, turn > 0 ? 2 : 8) << canvas.view->zoom();
    }
}

TEST_F(StruckText, KeepsItsLinesWhileItIsEdited) {
    for (const BlockPtr &block : blocks) {
        const QList<QRectF> atRest = linesOf(block);
        ASSERT_FALSE(atRest.isEmpty());
        canvas.model.beginEditing(block);
        canvas.settle();
        const QList<QRectF> edited = linesOf(block);
        ASSERT_EQ(edited.size(), atRest.size()) << int(block->blockType());
        for (int i = 0; i < edited.size(); ++i) {
            EXPECT_NEAR(edited[i].left(), atRest[i].left(), 1) << int(block->blockType());
            EXPECT_NEAR(edited[i].width(), atRest[i].width(), 1) << int(block->blockType());
            EXPECT_NEAR(edited[i].top(), atRest[i].top(), 1) << int(block->blockType());
        }
        canvas.model.endEditing();
        block->setIsStrikethrough(false);
        canvas.settle();
        EXPECT_TRUE(linesOf(block).isEmpty());
    }
}

} // namespace tallowby
