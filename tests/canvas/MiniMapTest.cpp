#include "canvas/overlay/minimap/MiniMapGeometry.h"
#include "canvas/overlay/minimap/MiniMapPicture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tallowby {

namespace {

constexpr QSizeF kMap{200, 130};
constexpr double kPadding = 8;

MiniMapGeometry geometry(const QRectF &blocks, QPointF offset = {}, double scale = 1) {
    return {.blocks = blocks,
            .offset = offset,
            .scale = scale,
            .viewportSize = {1'000, 800},
            .mapSize = kMap,
            .padding = kPadding};
}

TEST(MiniMapGeometry, TheWorldIsAllBlocksAndTheViewWithAMargin) {
    EXPECT_EQ(geometry({}).worldRect(), QRectF(-1'000, -1'000, 2'000, 2'000));
    EXPECT_EQ(geometry({}, {5'000, 0}).worldRect(), QRectF(-1'000, -1'000, 2'000, 2'000))
        << "empty, wherever one looks";
    EXPECT_EQ(geometry({0, 0, 100, 100}).worldRect(), QRectF(-1'000, -900, 2'000, 1'800));
    EXPECT_EQ(geometry({2'000, 0, 100, 100}).worldRect(), QRectF(-1'000, -900, 3'600, 1'800));
    // Zoomed in twofold and moved: the point at the middle is -offset / scale, what is seen half as large.
    EXPECT_EQ(geometry({}, {-600, 200}, 2).visibleRect(), QRectF(300 - 250, -100 - 200, 500, 400));
    EXPECT_EQ(geometry({0, 0, 10, 10}, {-600, 200}, 2).worldRect(), QRectF(-500, -800, 1'550, 1'400));
}

TEST(MiniMapGeometry, IsNeededOnceSomePartOfABlockIsOutOfSight) {
    EXPECT_FALSE(geometry({}).hasBlocksOutside());
    EXPECT_FALSE(geometry({-500, -400, 1'000, 800}).hasBlocksOutside());
    EXPECT_TRUE(geometry({-500, -400, 1'001, 800}).hasBlocksOutside());
    EXPECT_TRUE(geometry({-10, -10, 20, 20}, {505, 0}).hasBlocksOutside());
    EXPECT_TRUE(geometry({-500, -400, 1'000, 800}, {}, 1.2).hasBlocksOutside());
}

TEST(MiniMapGeometry, FitsTheWorldEvenlyAndFindsTheWayBack) {
    for (const MiniMapGeometry &map :
         {geometry({}), geometry({0, 0, 100, 100}), geometry({-9'000, 40, 300, 90}, {700, -90}, 0.25),
          geometry({100, -30'000, 50, 60'000}, {-400, 0}, 3)}) {
        const QRectF world = map.toMap(map.worldRect());
        EXPECT_NEAR(world.center().x(), kMap.width() / 2, 1e-6);
        EXPECT_NEAR(world.center().y(), kMap.height() / 2, 1e-6);
        EXPECT_GE(world.left(), kPadding - 1e-6);
        EXPECT_GE(world.top(), kPadding - 1e-6);
        EXPECT_TRUE(std::abs(world.left() - kPadding) < 1e-6 || std::abs(world.top() - kPadding) < 1e-6);
        EXPECT_TRUE(world.contains(map.toMap(map.visibleRect())));

        const QPointF canvasPoint(123, -45);
        EXPECT_LT(
            (map.toCanvas(map.toMap(QRectF(canvasPoint, QSizeF(1, 1))).topLeft()) - canvasPoint).manhattanLength(),
            1e-6);
        MiniMapGeometry jumped = map;
        jumped.offset = map.offsetShowing(canvasPoint);
        EXPECT_LT((jumped.visibleRect().center() - canvasPoint).manhattanLength(), 1e-6);
    }
}

TEST(MiniMapPicture, MarksLieWhereTheBlocksDoWithLaterOnesAbove) {
    const QImage picture = paintMiniMap({{{0, 0, 50, 50}, qRgb(255, 0, 0)},
                                         {{25, 25, 25, 25}, qRgb(0, 0, 255)},
                                         {{90, 90, 0.001, 0.001}, qRgb(0, 255, 0)}},
                                        {0, 0, 100, 100}, {10, 10});
    EXPECT_EQ(qAlpha(picture.pixel(1, 1)), 102) << "four tenths";
    EXPECT_EQ(picture.pixelColor(1, 1).red(), 255);
    EXPECT_GT(picture.pixelColor(3, 3).blue(), picture.pixelColor(3, 3).red());
    EXPECT_GT(qAlpha(picture.pixel(3, 3)), 102);
    EXPECT_EQ(picture.pixelColor(9, 9).green(), 255) << "the smallest block has a pixel";
    EXPECT_EQ(qAlpha(picture.pixel(7, 2)), 0);
}

TEST(MiniMapPicture, TakesWhateverComes) {
    // Far more layers than can be seen, and frames at the ends of what numbers can be.
    std::vector<MiniMapMark> marks(100'000, {{0, 0, 1e4, 1e4}, qRgb(0, 0, 0)});
    const double far = std::numeric_limits<double>::max();
    marks.push_back({{-far, -far, far, far}, qRgb(0, 0, 0)});
    marks.push_back({{far, far, far, far}, qRgb(0, 0, 0)});
    for (const QRectF &area : {QRectF(0, 0, 1e4, 1e4), QRectF(-far, -far, far, far), QRectF()}) {
        EXPECT_EQ(paintMiniMap(marks, area, {400, 260}).size(), QSize(400, 260));
    }
}

} // namespace

} // namespace tallowby
