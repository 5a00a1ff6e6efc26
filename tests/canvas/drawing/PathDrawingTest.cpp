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

QImage painted(const PathDrawing &drawing) {
    QImage image(100, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
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

} // namespace
} // namespace tallowby
