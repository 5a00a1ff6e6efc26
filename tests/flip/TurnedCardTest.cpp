#include "flip/scene/TurnedCard.h"
#include "flip/scene/CardTransform.h"
#include "flip/scene/SoftenedPicture.h"

#include <gtest/gtest.h>

#include <QPainter>

#include <numbers>

namespace tallowby {
namespace {

constexpr QSize kView{640, 360};
constexpr QRgb kGround = 0xFF404040;

QImage filled(QSize size, QRgb color, QImage::Format format = QImage::Format_RGB32) {
    QImage image(size, format);
    image.fill(color);
    return image;
}

QImage painted(const TurnedFace &face) {
    QImage target = filled(kView, 0xFFFF00FF);
    paintTurnedFace(face, filled(kView, kGround), target);
    return target;
}

TEST(TurnedCard, StandsWhereTheProjectionPutsIt) {
    QImage card = filled(kView, 0xFFFFFFFF);
    const QList<QPoint> marks{{60, 40}, {320, 180}, {580, 40}, {60, 320}, {580, 320}};
    QPainter painter(&card);
    for (const QPoint mark : marks) {
        painter.fillRect(QRect(mark - QPoint(8, 8), QSize(16, 16)), Qt::black);
    }
    painter.end();
    for (const double angle : {0.0, 0.4, -0.4, 1.1, -1.3}) {
        const QImage picture = painted({card, card.rect(), angle, 0});
        const QMatrix4x4 matrix = CardTransform::matrix(angle, kView);
        for (const QPoint mark : marks) {
            const QPointF seen = matrix.map(QPointF(mark));
            if (picture.rect().contains(seen.toPoint())) {
                EXPECT_LT(qGray(picture.pixel(seen.toPoint())), 64) << angle << " at " << mark.x() << ", " << mark.y();
            }
        }
        for (const QPointF corner : {QPointF(0, 0), QPointF(640, 0), QPointF(0, 360), QPointF(640, 360)}) {
            // A little inside of the seen corner there is card, a little outside of it ground.
            const QPointF seen = matrix.map(corner);
            const QPointF inwards((320 - seen.x()) / 60, (180 - seen.y()) / 60);
            const QPoint inside = (seen + inwards).toPoint();
            const QPoint outside = (seen - inwards).toPoint();
            EXPECT_TRUE(!picture.rect().contains(inside) || qGray(picture.pixel(inside)) > 200) << angle;
            EXPECT_TRUE(!picture.rect().contains(outside) || picture.pixel(outside) == kGround) << angle;
        }
    }
    EXPECT_EQ(painted({card, card.rect(), 0, 0}), card) << "to the bit when it faces the viewer";
}

TEST(TurnedCard, CoversTheGroundOnlyWhereItIsAndDarkensBoth) {
    const QImage face = filled({100, 80}, 0x80800000, QImage::Format_ARGB32_Premultiplied);
    const QImage picture = painted({face, QRect(270, 140, 100, 80), 0, 0.5});
    EXPECT_NEAR(qRed(picture.pixel(320, 180)), (0x80 + 0x20) / 2, 2);
    EXPECT_NEAR(qBlue(picture.pixel(320, 180)), 0x20 / 2, 2);
    EXPECT_NEAR(qGray(picture.pixel(10, 10)), 0x40 / 2, 1);

    for (const double edgeOn : {std::numbers::pi / 2, std::numbers::pi}) {
        EXPECT_EQ(painted({filled(kView, 0xFFFFFFFF), QRect({}, kView), edgeOn, 0}), filled(kView, kGround));
    }
    EXPECT_EQ(painted({}), filled(kView, kGround)) << "a picture that is not there yet";
}

TEST(SoftenedPicture, SpreadsEachColourEvenlyAndKeepsTheLight) {
    QImage picture = filled({80, 60}, 0xFF000000);
    QPainter(&picture).fillRect(30, 20, 20, 20, Qt::white);
    const QImage soft = softened(picture, Qt::white, 0);
    EXPECT_EQ(soft.pixel(39, 10), soft.pixel(39, 49));
    EXPECT_EQ(soft.pixel(20, 30), soft.pixel(59, 30));
    EXPECT_GT(qGray(soft.pixel(39, 29)), 200);
    EXPECT_NEAR(qGray(soft.pixel(30, 29)), 128, 12) << "half way at what was an edge";
    EXPECT_EQ(softened(filled({50, 50}, 0xFF336699), Qt::white, 1), filled({50, 50}, 0xFFFFFFFF));
    EXPECT_TRUE(softened({}, Qt::white, 0.5).isNull());
}

} // namespace
} // namespace tallowby
