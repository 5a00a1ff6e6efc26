#include "canvas/drawing/InkedPixels.h"
#include "canvas/drawing/ClippedOutlines.h"
#include "canvas/drawing/PathPicture.h"

#include <gtest/gtest.h>

#include <QPainter>

#include <cmath>

namespace tallowby {

namespace {

constexpr auto kFormat = QImage::Format_ARGB32_Premultiplied;

QImage paper(QSize size) {
    QImage image(size, kFormat);
    image.fill(QColor(0xF9F8F2));
    return image;
}

PathDrawing curl(const QBrush &fill = Qt::NoBrush) {
    QPainterPath path({10, 10});
    path.cubicTo({200, -40}, {-60, 160}, {150, 110});
    path.lineTo(20, 60);
    return PathDrawing({{.path = path, .fill = fill, .pen = QPen(QColor(200, 55, 45, 180), 3)}});
}

QImage pictureOf(const PathDrawing &drawing, QSize size) {
    QImage image(size, kFormat);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.paint(painter);
    return image;
}

/// Of the channel that differs most, anywhere.
int largestDifference(const QImage &one, const QImage &other) {
    EXPECT_EQ(one.size(), other.size());
    int largest = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor a = one.pixelColor(x, y);
            const QColor b = other.pixelColor(x, y);
            largest = std::max({largest, std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                                std::abs(a.blue() - b.blue()), std::abs(a.alpha() - b.alpha())});
        }
    }
    return largest;
}

} // namespace

TEST(InkedPixels, PaintWhatTheWholePictureWould) {
    const QImage picture = pictureOf(curl(), {181, 140});
    const InkedPixels ink(picture);
    EXPECT_EQ(ink.image(), picture);
    EXPECT_LT(ink.sizeInBytes(), picture.sizeInBytes() / 8);
    for (const QPoint place : {QPoint(0, 0), QPoint(37, 21), QPoint(-90, -70), QPoint(150, 99), QPoint(900, 0)}) {
        QImage expected = paper({240, 180});
        QPainter(&expected).drawImage(place, picture);
        QImage painted = paper({240, 180});
        ink.paint(painted, {.topLeft = place}, painted.rect());
        EXPECT_LE(largestDifference(painted, expected), 1) << place.x();
    }
}

TEST(InkedPixels, TakeTheNearestPixelAtEveryScaleAndKeepToTheClip) {
    const QImage picture = pictureOf(curl(), {181, 140});
    const InkedPixels ink(picture);
    const QRect clip(30, 20, 170, 110);
    for (const double scale : {0.13, 0.5, 0.999, 1.04, 3.7}) {
        const QPointF topLeft(-13.317, 7.843);
        QImage expected = paper({240, 180});
        for (int y = clip.top(); y <= clip.bottom(); ++y) {
            for (int x = clip.left(); x <= clip.right(); ++x) {
                const QPoint from(int(std::floor((x + 0.5 - topLeft.x()) / scale)),
                                  int(std::floor((y + 0.5 - topLeft.y()) / scale)));
                if (picture.rect().contains(from)) {
                    QPainter(&expected).drawImage(QPoint(x, y), picture, QRect(from, QSize(1, 1)));
                }
            }
        }
        QImage painted = paper({240, 180});
        ink.paint(painted, {.topLeft = topLeft, .scale = {scale, scale}}, clip);
        EXPECT_LE(largestDifference(painted, expected), 1) << scale;
    }
}

TEST(PathPicture, ThinLinesAreKeptAsTheirPixelsAndAreasWhole) {
    const auto lines = PathPicture::make(curl(), {});
    ASSERT_TRUE(lines && lines->ink());
    QPainterPath card;
    card.addRoundedRect({10, 10, 60, 40}, 10, 10);
    const auto filled = PathPicture::make(PathDrawing({{.path = card, .fill = Qt::black, .pen = Qt::NoPen}}), {});
    ASSERT_TRUE(filled);
    EXPECT_FALSE(filled->ink());
    const auto texture = PathPicture::makeBounded(curl(), {});
    ASSERT_TRUE(texture);
    EXPECT_FALSE(texture->ink());
    EXPECT_EQ(texture->image(), lines->image());
    EXPECT_EQ(texture->area(), lines->area());
}

TEST(PathPicture, ALargeSketchIsKeptInBandsAndALargeAreaNotAtAll) {
    constexpr double kScale = 20;
    const auto large = PathPicture::make(curl(), {.scale = kScale, .phase = {}});
    ASSERT_TRUE(large && large->ink());
    EXPECT_GT(double(large->size().width()) * large->size().height(), 2 * PathPicture::kLargestWhole);
    EXPECT_TRUE(large->area().contains(curl().bounds()));
    QImage whole(large->size(), kFormat);
    whole.fill(Qt::transparent);
    QPainter painter(&whole);
    painter.scale(kScale, kScale);
    painter.translate(-large->area().topLeft());
    curl().paint(painter);
    painter.end();
    // Curves are cut where a band ends.
    EXPECT_LE(largestDifference(large->image().scaled(500, 500), whole.scaled(500, 500)), 8);

    QPainterPath area;
    area.addRect(0, 0, 3000, 3000);
    EXPECT_FALSE(PathPicture::make(PathDrawing({{.path = area, .fill = Qt::black}}), {}));
    const auto texture = PathPicture::makeBounded(PathDrawing({{.path = area, .fill = Qt::black}}), {});
    EXPECT_TRUE(texture && texture->area().contains(area.boundingRect()));
    QPainterPath line({0, 0});
    line.lineTo(1e6, 0);
    const PathDrawing endless({{.path = line, .pen = QPen(Qt::black, 2)}});
    EXPECT_FALSE(PathPicture::make(endless, {}));
    const auto coarse = PathPicture::makeBounded(endless, {});
    EXPECT_TRUE(coarse && coarse->size().width() <= PathPicture::kLongestSide);
}

TEST(ClippedOutlines, LookTheSameWithinTheView) {
    const QRectF view(0, 0, 240, 180);
    for (const QBrush &fill : {QBrush(Qt::NoBrush), QBrush(QColor(47, 107, 235))}) {
        for (const QTransform &toView : {QTransform(), QTransform::fromScale(5, 5).translate(-60, -30),
                                         QTransform().translate(60, 20).rotate(50)}) {
            QImage expected = paper(view.size().toSize());
            QPainter whole(&expected);
            whole.setTransform(toView);
            curl(fill).paint(whole);
            QImage clipped = paper(view.size().toSize());
            QPainter painter(&clipped);
            clippedOutlines(curl(fill), toView, view).paint(painter);
            // The curves are made of straight pieces, a fraction of a pixel away.
            EXPECT_LE(largestDifference(clipped, expected), 90);
            EXPECT_NE(clipped, paper(view.size().toSize()));
        }
    }
}

TEST(ClippedOutlines, AreBoundedHoweverLargeTheDrawingIs) {
    const QRectF view(0, 0, 800, 600);
    QPainterPath ring;
    ring.addEllipse(QPointF(400, 300), 1.0, 1.0);
    const PathDrawing drawing({{.path = ring, .fill = QColor(47, 107, 235), .pen = QPen(Qt::black, 1e-5)}});
    // Inside of the circle; on its right edge; far away from it.
    const auto magnified = [](QPointF center) {
        return QTransform().translate(400, 300).scale(1e6, 1e6).translate(-center.x(), -center.y());
    };
    const auto middle = [&](const QTransform &toView) {
        const PathDrawing clipped = clippedOutlines(drawing, toView, view);
        EXPECT_TRUE(clipped.isEmpty() || view.adjusted(-100, -100, 100, 100).contains(clipped.bounds()));
        QImage image = paper(view.size().toSize());
        QPainter painter(&image);
        clipped.paint(painter);
        painter.end();
        return std::pair(image.pixelColor(100, 300), image.pixelColor(700, 300));
    };
    const QColor blue(47, 107, 235);
    const QColor ground(0xF9F8F2);
    EXPECT_EQ(middle(magnified({400, 300})), std::pair(blue, blue));
    EXPECT_EQ(middle(magnified({401, 300})), std::pair(blue, ground));
    EXPECT_EQ(middle(magnified({410, 300})), std::pair(ground, ground));
}

} // namespace tallowby
