#include "blocks/shape/ShapeOutlines.h"

#include <algorithm>
#include <numbers>

namespace tallowby {

namespace {

constexpr double kRectangleRadius = 6;

constexpr double kTailShare = 0.2;
constexpr double kTailStart = 0.22;
/// In tail heights from its start.
constexpr double kTailTip = 0.4;
constexpr double kTailEnd = 1.6;

/// How far before a round corner the bend of a continuous one begins, in radii.
constexpr double kSoftStart = 1.25;
/// How far the middle of a quarter circle lies from both sides of its corner, in radii.
constexpr double kMiddle = 1 - std::numbers::sqrt2 / 2;

QPainterPath closed(std::initializer_list<QPointF> corners) {
    QPainterPath path;
    path.addPolygon(QPolygonF(corners));
    path.closeSubpath();
    return path;
}

} // namespace

QPainterPath continuousRoundedRect(const QRectF &rect, double radius) {
    const double halfSide = std::min(rect.width(), rect.height()) / 2;
    const double r = std::clamp(radius, 0.0, std::max(halfSide, 0.0));
    const double start = std::min(kSoftStart * r, halfSide);
    // The cubic of a corner goes through the same middle as a circle would, wherever it starts.
    const double control = (8 * kMiddle * r - start) / 3;
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.moveTo(rect.left() + start, rect.top());
    path.lineTo(rect.right() - start, rect.top());
    path.cubicTo(rect.right() - control, rect.top(), rect.right(), rect.top() + control, rect.right(),
                 rect.top() + start);
    path.lineTo(rect.right(), rect.bottom() - start);
    path.cubicTo(rect.right(), rect.bottom() - control, rect.right() - control, rect.bottom(), rect.right() - start,
                 rect.bottom());
    path.lineTo(rect.left() + start, rect.bottom());
    path.cubicTo(rect.left() + control, rect.bottom(), rect.left(), rect.bottom() - control, rect.left(),
                 rect.bottom() - start);
    path.lineTo(rect.left(), rect.top() + start);
    path.cubicTo(rect.left(), rect.top() + control, rect.left() + control, rect.top(), rect.left() + start, rect.top());
    path.closeSubpath();
    return path;
}

double SpeechBubbleShape::tailHeight(const QRectF &rect) {
    return std::min(kTailShare * rect.height(), kTallestTail);
}

double SpeechBubbleShape::cornerRadius(const QRectF &body) {
    return std::min({kLargestRadius, body.width() / 3, body.height() / 3});
}

QPainterPath SpeechBubbleShape::path(const QRectF &rect) {
    const double tail = tailHeight(rect);
    const QRectF body = rect.adjusted(0, 0, 0, -tail);
    QPainterPath path = continuousRoundedRect(body, cornerRadius(body));
    const double start = body.left() + kTailStart * body.width();
    path.addPath(closed(
        {{start, body.bottom()}, {start + kTailTip * tail, rect.bottom()}, {start + kTailEnd * tail, body.bottom()}}));
    return path;
}

QPainterPath TriangleShape::path(const QRectF &rect) {
    return closed({{rect.center().x(), rect.top()}, rect.bottomRight(), rect.bottomLeft()});
}

QPainterPath DiamondShape::path(const QRectF &rect) {
    const QPointF middle = rect.center();
    return closed(
        {{middle.x(), rect.top()}, {rect.right(), middle.y()}, {middle.x(), rect.bottom()}, {rect.left(), middle.y()}});
}

QPainterPath LineShape::path(const QRectF &rect) {
    QPainterPath path({0, rect.center().y()});
    path.lineTo(rect.width(), rect.center().y());
    return path;
}

QPainterPath ArrowShape::path(const QRectF &rect) {
    QPainterPath path = LineShape::path(rect);
    const QPointF tip = path.currentPosition();
    path.moveTo(tip - QPointF(kHeadLength, kHeadHalfWidth));
    path.lineTo(tip);
    path.lineTo(tip - QPointF(kHeadLength, -kHeadHalfWidth));
    return path;
}

QPainterPath shapeOutline(ShapeType shape, const QRectF &rect) {
    switch (shape) {
    case ShapeType::rectangle:
        return continuousRoundedRect(rect, kRectangleRadius);
    case ShapeType::circle: {
        QPainterPath path;
        path.addEllipse(rect);
        return path;
    }
    case ShapeType::arrow:
        return ArrowShape::path(rect);
    case ShapeType::line:
        return LineShape::path(rect);
    case ShapeType::diamond:
        return DiamondShape::path(rect);
    case ShapeType::triangle:
        return TriangleShape::path(rect);
    case ShapeType::speechBubble:
        return SpeechBubbleShape::path(rect);
    }
    return {};
}

bool isFilled(ShapeType shape) {
    return shape != ShapeType::line && shape != ShapeType::arrow;
}

} // namespace tallowby
