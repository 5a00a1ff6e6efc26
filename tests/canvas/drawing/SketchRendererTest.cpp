#include "canvas/drawing/SketchRenderer.h"
#include "canvas/drawing/LiveSketchState.h"
#include "canvas/drawing/PathPicture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPainter>

#include <cmath>

namespace tallowby {

namespace {

using Points = std::vector<SketchPoint>;

/// A hand's spiral.
Points spiral(std::size_t count, double pressure = 1) {
    Points points;
    for (std::size_t i = 0; i < count; ++i) {
        const double angle = 0.13 * double(i);
        points.push_back({.x = angle * std::cos(angle) / 4, .y = angle * std::sin(angle) / 4, .pressure = pressure});
    }
    return points;
}

QImage painted(const PathDrawing &drawing, QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.paint(painter);
    return image;
}

} // namespace

TEST(SketchRenderer, SmoothsByCountAndValue) {
    EXPECT_TRUE(SketchRenderer::smoothed({}, 8).empty());
    const Points two{{0, 0, 1}, {5, 5, 0.5}};
    EXPECT_EQ(SketchRenderer::smoothed(two, 8), two);
    const Points corner{{0, 0, 1}, {10, 0, 0.5}, {10, 10, 0}};
    const Points smooth = SketchRenderer::smoothed(corner, 8);
    ASSERT_EQ(smooth.size(), 17);
    EXPECT_EQ(smooth[0], corner[0]);
    EXPECT_EQ(smooth[8], corner[1]);
    EXPECT_EQ(smooth[16], corner[2]);
    // The middle of the first segment: (−p0 + 9·p1 + 9·p2 − p3) / 16, the first point repeated before itself.
    EXPECT_NEAR(smooth[4].x, (0 + 90 - 10) / 16.0, 1e-12);
    EXPECT_NEAR(smooth[4].y, -10 / 16.0, 1e-12);
    EXPECT_NEAR(smooth[4].pressure, 0.75, 1e-12);
    EXPECT_EQ(SketchRenderer::smoothed(spiral(100), 5).size(), 99 * 5 + 1);
}

TEST(LiveSketchState, FreezesTheSettledBeginning) {
    LiveSketchState state;
    const Points points = spiral(10'000);
    const auto append = [&state, &points](std::size_t end) {
        for (std::size_t i = state.currentStrokePoints().size(); i < end; ++i) {
            state.append(points[i].x, points[i].y, 1);
        }
    };
    append(40);
    EXPECT_EQ(state.frozenRawIndex(), 0);
    EXPECT_TRUE(state.frozenSmoothedPoints().empty());
    append(41);
    EXPECT_EQ(state.frozenRawIndex(), 21);
    EXPECT_EQ(state.frozenSmoothedPoints().size(), 20 * 8 + 1);
    EXPECT_EQ(state.unfrozenTail().size(), 20 + 3);
    append(61);
    EXPECT_EQ(state.frozenRawIndex(), 21);
    append(62);
    EXPECT_EQ(state.frozenRawIndex(), 42);
    EXPECT_EQ(state.frozenSmoothedPoints().size(), (20 * 8 + 1) + (23 * 8 + 1));
    EXPECT_EQ(state.frozenSmoothedPoints()[161], QPointF(points[18].x, points[18].y)) << "three points back";
    append(10'000);
    EXPECT_EQ(state.currentStrokePoints(), points);
    EXPECT_LE(state.unfrozenTail().size(), 40 + 3);

    state.append(std::nan(""), 0, 1);
    EXPECT_EQ(state.currentStrokePoints().size(), 10'000);
    state.reset();
    EXPECT_TRUE(state.currentStrokePoints().empty());
    EXPECT_TRUE(state.frozenSmoothedPoints().empty());
    EXPECT_EQ(state.frozenRawIndex(), 0);
}

TEST(SketchRenderer, InkStaysWithinTheReachOfThePen) {
    struct Case {
        const char *name;
        Points points;
        QRectF around;
    };
    const double huge = 1e300;
    const Case cases[] = {
        {"a dot", {{10, 10, 1}}, {10, 10, 0, 0}},
        {"a dot many times", Points(500, {10, 10, 0.5}), {10, 10, 0, 0}},
        {"a line", {{0, 0, 1}, {50, 0, 1}}, {0, 0, 50, 0}},
        {"there and back", {{0, 0, 0.2}, {50, 0, 1}, {0, 0, 0.2}, {50, 0, 1}}, {-4, 0, 58, 0}},
        {"a long spiral", spiral(10'000), {-326, -326, 652, 652}},
        {"a long spiral of a light hand", spiral(10'000, 0.4), {-326, -326, 652, 652}},
        {"numbers beyond any canvas", {{-huge, 0, 1}, {0, huge, 1}, {huge, -huge, -huge}}, {-2e5, -2e5, 4e5, 4e5}},
    };
    for (const Case &each : cases) {
        const PathDrawing drawing({SketchRenderer::stroke(each.points, Qt::black, 6, {0, 0})});
        const QRectF &bounds = drawing.bounds();
        EXPECT_FALSE(drawing.isEmpty()) << each.name;
        EXPECT_TRUE(each.around.adjusted(-3.01, -3.01, 3.01, 3.01).contains(bounds))
            << each.name << ": " << bounds.x() << " " << bounds.y() << " " << bounds.width() << " " << bounds.height();
        const auto picture = PathPicture::makeBounded(drawing, {.scale = 0.5, .phase = {0.25, 0.75}});
        ASSERT_TRUE(picture) << each.name;
        EXPECT_LE(picture->image().sizeInBytes(), 16'000'000) << each.name;
        EXPECT_TRUE(picture->area().contains(bounds)) << each.name;
    }
    EXPECT_TRUE(PathDrawing({SketchRenderer::stroke({}, Qt::black, 6, {0, 0})}).isEmpty());
}

TEST(SketchRenderer, WidthFollowsThePressure) {
    const auto inkedRows = [](double left, double right) {
        const Points points{{10, 25, left}, {50, 25, (left + right) / 2}, {90, 25, right}};
        const QImage image = painted(PathDrawing({SketchRenderer::stroke(points, Qt::black, 20, {0, 0})}), {100, 50});
        const auto rows = [&image](int x) {
            int inked = 0;
            for (int y = 0; y < image.height(); ++y) {
                inked += qAlpha(image.pixel(x, y)) > 127;
            }
            return inked;
        };
        return std::pair(rows(15), rows(85));
    };
    EXPECT_EQ(inkedRows(1, 1), std::pair(20, 20));
    const auto [light, full] = inkedRows(0, 1);
    EXPECT_THAT(light, testing::AllOf(testing::Ge(5), testing::Le(8)));
    EXPECT_GE(full, 18);
    // A loop with sharp turns has no hole where its pieces lie over each other.
    const Points zigzag{{20, 25, 0.9}, {60, 25, 0.9}, {20, 26, 0.9}, {60, 27, 0.9}};
    const QImage image = painted(PathDrawing({SketchRenderer::stroke(zigzag, Qt::black, 20, {0, 0})}), {100, 50});
    for (int x = 22; x < 58; ++x) {
        EXPECT_EQ(qAlpha(image.pixel(x, 25)), 255) << x;
    }
}

} // namespace tallowby
