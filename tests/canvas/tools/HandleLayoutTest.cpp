#include "canvas/container/HandleLayout.h"
#include "canvas/container/DashedOutline.h"

#include <gtest/gtest.h>

namespace tallowby {

namespace {

TEST(Handles, StandAtTheOutlineAndTakeALargeSquare) {
    const HandleLayout layout({100, 100, 200, 100}, 0);
    EXPECT_EQ(layout.middleOf(Corner::topLeft), QPointF(96, 96));
    EXPECT_EQ(layout.middleOf(Corner::bottomRight), QPointF(304, 204));
    EXPECT_EQ(layout.middleOf(RotationHandle{}), QPointF(200, 72));
    for (const Corner corner : HandleLayout::kCorners) {
        const QPointF middle = layout.middleOf(corner);
        EXPECT_EQ(layout.handleAt(middle), BlockHandle(corner));
        EXPECT_EQ(layout.handleAt(middle + 11 * directionOf(corner)), BlockHandle(corner));
        EXPECT_FALSE(layout.handleAt(middle + 13 * directionOf(corner)));
    }
    EXPECT_EQ(layout.handleAt({209, 62}), BlockHandle(RotationHandle{}));
    EXPECT_FALSE(layout.handleAt({200, 150}));

    const HandleLayout turned({100, 100, 200, 100}, 90);
    EXPECT_NEAR(turned.middleOf(RotationHandle{}).x(), 278, 1e-9);
    EXPECT_EQ(turned.handleAt(turned.middleOf(Corner::topLeft)), BlockHandle(Corner::topLeft));
}

TEST(Handles, LeaveTheInsideOfATinyBlockFree) {
    const HandleLayout layout({100, 100, 24, 6}, 0);
    EXPECT_FALSE(layout.handleAt({112, 103})) << "it can still be dragged";
    EXPECT_EQ(layout.handleAt({126, 108}), BlockHandle(Corner::bottomRight));
    EXPECT_EQ(layout.handleAt({97, 97}), BlockHandle(Corner::topLeft));
}

TEST(Handles, PointersSayWhereACornerGoes) {
    const struct {
        double rotation;
        Corner corner;
        Qt::CursorShape shape;
    } cases[] = {
        {0, Corner::topLeft, Qt::SizeFDiagCursor},        {0, Corner::topRight, Qt::SizeBDiagCursor},
        {45, Corner::topLeft, Qt::SizeVerCursor},         {45, Corner::topRight, Qt::SizeHorCursor},
        {90, Corner::bottomRight, Qt::SizeBDiagCursor},   {-45, Corner::bottomLeft, Qt::SizeVerCursor},
        {360 + 90, Corner::topLeft, Qt::SizeBDiagCursor}, {-1000, Corner::topLeft, Qt::SizeBDiagCursor},
    };
    for (const auto &[rotation, corner, shape] : cases) {
        EXPECT_EQ(HandleLayout({0, 0, 100, 100}, rotation).cursorOf(corner), shape) << rotation << ' ' << int(corner);
    }
}

TEST(Handles, AnEndlessDashedOutlineCostsNoMoreThanTheScreen) {
    const QRectF room(0, 0, 800, 600);
    EXPECT_LT(DashedOutline::dashes({-1e6, 10, 2e6, 1e6}, room).size(), 100);
    EXPECT_TRUE(DashedOutline::dashes({-10, -10, 820, 620}, room).isEmpty()) << "all edges are out of sight";
    for (const QRectF &dash : DashedOutline::dashes({20, 30, 100, 50}, room)) {
        EXPECT_TRUE(QRectF(20, 30, 100, 50).contains(dash));
    }
}

} // namespace

} // namespace tallowby
