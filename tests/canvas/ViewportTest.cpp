#include "canvas/view/Viewport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tallowby {

namespace {

Viewport viewportOf(QSizeF size) {
    Viewport viewport;
    viewport.setSize(size);
    return viewport;
}

void expectNear(QPointF actual, QPointF expected) {
    EXPECT_NEAR(actual.x(), expected.x(), 1e-9);
    EXPECT_NEAR(actual.y(), expected.y(), 1e-9);
}

TEST(Viewport, MapsBetweenScreenAndCanvas) {
    Viewport viewport = viewportOf({800, 600});
    viewport.pan({30, -20});
    viewport.setScale(2.0);

    expectNear(viewport.toScreen({10, 10}), {400 + 60 + 20, 300 - 40 + 20});
    expectNear(viewport.toCanvas(viewport.toScreen({-123.5, 77})), {-123.5, 77});
    EXPECT_EQ(viewport.visibleRect(), QRectF((-60 - 400) / 2.0, (40 - 300) / 2.0, 400, 300));
}

TEST(Viewport, ZoomsInStepsWithinItsBounds) {
    Viewport viewport = viewportOf({800, 600});
    for (int step = 0; step < 5; ++step) {
        viewport.setScale(viewport.scale() * Viewport::kZoomStep);
    }
    EXPECT_NEAR(viewport.scale(), 2.48832, 1e-9);
    viewport.setScale(viewport.scale() * Viewport::kZoomStep);
    viewport.setScale(viewport.scale() * Viewport::kZoomStep);
    EXPECT_EQ(viewport.scale(), 3.0);
    viewport.setScale(0.3);
    viewport.setScale(viewport.scale() / Viewport::kZoomStep);
    viewport.setScale(viewport.scale() / Viewport::kZoomStep);
    EXPECT_EQ(viewport.scale(), 0.25);
    viewport.setScale(1.0);
    EXPECT_EQ(viewport.scale(), 1.0) << "the way back to 100 % leaves no rounding behind";
}

TEST(Viewport, ZoomKeepsTheFixedPointUnderIt) {
    struct Case {
        const char *what;
        QPointF at;
        double factor;
    };
    for (const Case &zoom : {Case{"in, at a corner", {3, 5}, 1.7}, Case{"out, off centre", {700, 100}, 0.4},
                             Case{"beyond the bound", {20, 590}, 100}}) {
        Viewport viewport = viewportOf({801, 600});
        viewport.pan({-340, 91});
        const QPointF before = viewport.toCanvas(zoom.at);
        EXPECT_TRUE(viewport.zoomAroundScreenPoint(zoom.at, zoom.factor)) << zoom.what;
        expectNear(viewport.toCanvas(zoom.at), before);
    }
    Viewport viewport = viewportOf({800, 600});
    viewport.pan({50, 60});
    const QPointF center = viewport.toCanvas(viewport.center());
    viewport.setScale(2.0);
    expectNear(viewport.toCanvas(viewport.center()), center);
}

TEST(Viewport, IgnoresWhatChangesNothingOrIsNoNumber) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Viewport viewport = viewportOf({800, 600});
    viewport.pan({12, 34});
    EXPECT_FALSE(viewport.setScale(1.0));
    EXPECT_FALSE(viewport.setScale(nan));
    EXPECT_FALSE(viewport.zoomAroundScreenPoint({nan, 0}, 2));
    EXPECT_FALSE(viewport.pan({0, 0}));
    EXPECT_FALSE(viewport.pan({nan, 1}));
    EXPECT_EQ(viewport.offset(), QPointF(12, 34));
    EXPECT_EQ(viewport.scale(), 1.0);
}

TEST(Viewport, AsksForCullingAfterLongPansAndAnyZoomOrResize) {
    Viewport viewport = viewportOf({800, 600});
    EXPECT_TRUE(viewport.needsCulling()) << "nothing was culled yet";
    viewport.noteCulled();
    viewport.pan({100, -100});
    EXPECT_FALSE(viewport.needsCulling());
    viewport.pan({0, -21});
    EXPECT_TRUE(viewport.needsCulling());
    viewport.noteCulled();
    viewport.setScale(1.1);
    EXPECT_TRUE(viewport.needsCulling());
    viewport.noteCulled();
    viewport.setSize({801, 600});
    EXPECT_TRUE(viewport.needsCulling());
}

} // namespace

} // namespace tallowby
