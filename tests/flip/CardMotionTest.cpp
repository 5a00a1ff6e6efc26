#include "flip/scene/CardTransform.h"
#include "flip/scene/HexColor.h"
#include "flip/scene/KeyframeCurve.h"
#include "flip/scene/Picture.h"
#include "platform/theme/SpringCurve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace tallowby {
namespace {

using namespace std::chrono_literals;

/// The spring's differential equation, integrated by Runge-Kutta of fourth order.
class IntegratedSpring {
public:
    double value = 0;

    void advance(double step) {
        const auto acceleration = [](double x, double v) { return 220.0 * (1 - x) - 24.0 * v; };
        const double v1 = m_velocity, a1 = acceleration(value, v1);
        const double v2 = m_velocity + a1 * step / 2, a2 = acceleration(value + v1 * step / 2, v2);
        const double v3 = m_velocity + a2 * step / 2, a3 = acceleration(value + v2 * step / 2, v3);
        const double v4 = m_velocity + a3 * step, a4 = acceleration(value + v3 * step, v4);
        value += step / 6 * (v1 + 2 * v2 + 2 * v3 + v4);
        m_velocity += step / 6 * (a1 + 2 * a2 + 2 * a3 + a4);
    }

private:
    double m_velocity = 0;
};

TEST(SpringCurve, isTheSolutionOfItsEquationAndSettles) {
    const SpringCurve spring(1, 220, 24);
    IntegratedSpring integrated;
    double highest = 0;
    for (int millisecond = 0; millisecond < 2000; ++millisecond) {
        const double value = spring.value(std::chrono::milliseconds(millisecond));
        ASSERT_NEAR(value, integrated.value, 1e-9) << millisecond;
        if (std::chrono::milliseconds(millisecond) >= spring.settlingDuration()) {
            ASSERT_LE(std::abs(value - 1), SpringCurve::kRestTolerance) << millisecond;
        }
        highest = std::max(highest, value);
        integrated.advance(0.001);
    }
    EXPECT_GT(highest, 1.01) << "the turn is meant to overshoot a little";
    EXPECT_LT(highest, 1.03);
    EXPECT_GT(spring.settlingDuration(), 500ms);
    EXPECT_LT(spring.settlingDuration(), 700ms);
}

TEST(KeyframeCurve, easesBetweenItsKeyFrames) {
    const KeyframeCurve pulse({{0, 0}, {0.45, 0.18}, {1, 0}});
    for (const auto &[progress, value] :
         {std::pair(-1.0, 0.0), std::pair(0.0, 0.0), std::pair(0.225, 0.09), std::pair(0.45, 0.18),
          std::pair(0.725, 0.09), std::pair(1.0, 0.0), std::pair(2.0, 0.0)}) {
        EXPECT_NEAR(pulse.value(progress), value, 1e-6) << progress;
    }
    EXPECT_LT(pulse.value(0.05), 0.18 * 0.05 / 0.45) << "it starts slowly";
    EXPECT_GT(pulse.value(0.40), 0.18 * 0.40 / 0.45) << "and arrives slowly";
}

TEST(CardTransform, showsACornerWhereAThreeDimensionalTurnPutsIt) {
    const QSizeF size(1920, 1080);
    EXPECT_NEAR(CardTransform::m34(size), -1.0 / 3072, 1e-12);
    EXPECT_EQ(CardTransform::m34({}), -0.0005);
    for (const double angle : {0.0, 0.3, 1.2, 1.5, 2.5, std::numbers::pi, 4.0, -0.05}) {
        for (const QPointF point : {QPointF(0, 0), QPointF(1920, 0), QPointF(1920, 1080), QPointF(300, 700)}) {
            const double x = point.x() - 960, y = point.y() - 540;
            // Turned about (0, 1, 0); depth counts towards the viewer, who stands 3072 off.
            const double turnedX = x * std::cos(angle), depth = -x * std::sin(angle);
            const double scale = 3072 / (3072 - depth);
            const QPointF shown = CardTransform::matrix(angle, size).map(point);
            EXPECT_NEAR(shown.x(), 960 + turnedX * scale, 0.01);
            EXPECT_NEAR(shown.y(), 540 + y * scale, 0.01);
        }
    }
}

TEST(HexColor, takesThreeSixOrEightDigits) {
    EXPECT_EQ(colorFromHex(u"F9F8F2"), QColor(249, 248, 242));
    EXPECT_EQ(colorFromHex(u" #f9f8f2;"), QColor(249, 248, 242));
    EXPECT_EQ(colorFromHex(u"1af"), QColor(17, 170, 255));
    EXPECT_EQ(colorFromHex(u"80FF0010"), QColor(255, 0, 16, 128));
    for (const QStringView bad : {u"", u"#", u"12345", u"123456789", u"GGGGGG"}) {
        EXPECT_EQ(colorFromHex(bad), QColor(0, 0, 0));
    }
}

TEST(Picture, cropsEvenlyWhatIsOver) {
    EXPECT_EQ(Picture::coveringPart({100, 100}, {1920, 1080}), QRectF(0, 21.875, 100, 56.25));
    EXPECT_EQ(Picture::coveringPart({400, 100}, {200, 100}), QRectF(100, 0, 200, 100));
    EXPECT_TRUE(Picture::coveringPart({0, 100}, {200, 100}).isEmpty());
}

} // namespace
} // namespace tallowby
