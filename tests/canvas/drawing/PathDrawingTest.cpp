#include "canvas/drawing/PathDrawing.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include <latch>
#include <thread>

namespace tallowby {
namespace {

PathDrawing curls() {
    std::vector<PathLayer> layers;
    for (int i = 0; i < 200; ++i) {
        QPainterPath path({i % 20 * 5.0, i * 0.5});
        for (int j = 0; j < 20; ++j) {
            path.cubicTo(path.currentPosition() + QPointF(4, 0), {40.0 * (j % 3), 90}, {5.0 * j, i * 0.5});
        }
        layers.push_back({.path = path, .pen = QPen(Qt::red, 1)});
    }
    return PathDrawing(std::move(layers));
}

QImage painted(const PathDrawing &drawing, const QRect &view = {0, 0, 100, 100}) {
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.translate(-view.topLeft());
    drawing.paint(painter);
    return image;
}

// A path that two threads paint at once shows parts of itself, or is never done.
TEST(PathDrawing, IsPaintedByTwoThreadsAtOnce) {
    const QImage expected = painted(curls());
    for (int round = 0; round < 10; ++round) {
        const PathDrawing drawing = curls();
        std::latch start(2);
        QImage another;
        std::thread thread([&another, &start, copy = drawing.apart()] {
            start.arrive_and_wait();
            another = painted(copy);
        });
        start.arrive_and_wait();
        const QImage here = painted(drawing);
        thread.join();
        ASSERT_EQ(here, expected) << round;
        ASSERT_EQ(another, expected) << round;
    }
}

TEST(PathDrawing, PaintsAllThatIsInSight) {
    const QImage whole = painted(curls());
    for (const QRect view : {QRect(30, 30, 40, 40), QRect(0, 60, 100, 10), QRect(95, 0, 5, 100)}) {
        const QImage part = painted(curls(), view);
        for (int y = 0; y < part.height(); ++y) {
            for (int x = 0; x < part.width(); ++x) {
                // Curves are cut at the edge of what they are painted on, which moves them by a fraction of a pixel.
                ASSERT_NEAR(qGreen(part.pixel(x, y)), qGreen(whole.pixel(view.topLeft() + QPoint(x, y))), 40)
                    << view.x() << " " << x << " " << y;
            }
        }
    }
}

} // namespace
} // namespace tallowby
