#include "flip/scene/CardTransform.h"

#include <cmath>

namespace tallowby {

namespace {

/// How far the viewer stands off, in larger sides of the card.
constexpr double kViewerDistanceFactor = 1.6;
constexpr double kFallbackM34 = -0.0005;

} // namespace

void CardTransform::setAngle(double angle) {
    if (m_angle != angle) {
        m_angle = angle;
        recompute();
    }
}

void CardTransform::setSize(QSizeF size) {
    if (m_size != size) {
        m_size = size;
        recompute();
    }
}

double CardTransform::m34(QSizeF size) {
    const double distance = kViewerDistanceFactor * std::max(size.width(), size.height());
    return distance > 0 ? -1 / distance : kFallbackM34;
}

QMatrix4x4 CardTransform::matrix(double angle, QSizeF size) {
    // With x and y from the centre, the turn gives x cos θ, y and the depth −x sin θ (towards the viewer is positive);
    // the projection divides by 1 + m34 · depth.
    QMatrix4x4 turn;
    turn(0, 0) = float(std::cos(angle));
    turn(3, 0) = float(-m34(size) * std::sin(angle));
    turn.optimize();
    QMatrix4x4 matrix;
    matrix.translate(float(size.width() / 2), float(size.height() / 2));
    matrix *= turn;
    matrix.translate(float(-size.width() / 2), float(-size.height() / 2));
    return matrix;
}

void CardTransform::applyTo(QMatrix4x4 *matrix) const {
    *matrix *= m_matrix;
}

void CardTransform::recompute() {
    m_matrix = matrix(m_angle, m_size);
    update();
}

} // namespace tallowby
