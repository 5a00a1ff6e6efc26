#include "canvas/drawing/SketchRenderer.h"

#include "platform/theme/Theme.h"

#include <QLineF>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// In points: from where a drawing is seen, nothing reaches further. A record may claim any number, and the painter
/// counts in 32 bits.
constexpr double kFarthest = 100'000;
constexpr double kSmallestWidth = 0.1;
constexpr double kLargestWidth = 200;
/// Of the width, for a pen that hardly touches.
constexpr double kLightestWidth = 0.25;
/// A turn from one piece to the next, in radians, beyond which a wedge leaves a corner that can be seen.
constexpr double kRoundedTurn = 0.3;
/// Below, the ink of a stroke is a dot rather than a line, in points.
constexpr double kDotSize = 0.01;
/// A stroke of more points has them so close that fewer samples look the same.
constexpr std::size_t kLongStroke = 2'000;
constexpr int kSamplesOfLongStroke = 2;
constexpr double kGreySaturation = 0.12;
/// Of the lightness from black to white.
constexpr double kLostLightness = 0.35;

using Point = SketchPoint;

double catmullRom(double p0, double p1, double p2, double p3, double t) {
    return 0.5 *
           (2 * p1 + (p2 - p0) * t + (2 * p0 - 5 * p1 + 4 * p2 - p3) * t * t + (3 * p1 - p0 - 3 * p2 + p3) * t * t * t);
}

/// A segment of a stroke with its neighbours, the ends repeated beyond them.
struct Segment {
    const Point &p0;
    const Point &p1;
    const Point &p2;
    const Point &p3;
};

Segment segmentAt(std::span<const Point> points, std::size_t i) {
    return {points[i == 0 ? 0 : i - 1], points[i], points[i + 1], points[std::min(i + 2, points.size() - 1)]};
}

double bounded(double value) {
    return std::clamp(value, -kFarthest, kFarthest);
}

std::vector<Point> seenFrom(std::span<const Point> points, QPointF origin) {
    std::vector<Point> result(points.begin(),
                              points.begin() + std::ptrdiff_t(std::min(points.size(), SketchRenderer::kMostPoints)));
    for (Point &point : result) {
        point.x = bounded(point.x - origin.x());
        point.y = bounded(point.y - origin.y());
    }
    return result;
}

QPointF position(const Point &point) {
    return {point.x, point.y};
}

bool isPressedFully(std::span<const Point> points) {
    return std::ranges::all_of(points, [](const Point &point) { return point.pressure == 1.0; });
}

QPen roundPen(const QColor &color, double width) {
    return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

/// The curve itself: each segment of it is one cubic Bézier, whatever the zoom.
QPainterPath curve(std::span<const Point> points) {
    QPainterPath path(position(points.front()));
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const auto [p0, p1, p2, p3] = segmentAt(points, i);
        path.cubicTo(position(p1) + (position(p2) - position(p0)) / 6, position(p2) - (position(p3) - position(p1)) / 6,
                     position(p2));
    }
    return path;
}

QPainterPath polyline(std::span<const Point> points) {
    QPainterPath path(position(points.front()));
    for (const Point &point : points.subspan(1)) {
        path.lineTo(position(point));
    }
    return path;
}

/// Adds parts of one outline to a path that is filled where any of them is.
class OutlineBuilder {
public:
    explicit OutlineBuilder(double width)
        : m_width(width) {
        m_path.setFillRule(Qt::WindingFill);
    }

    void addDisc(const Point &at) {
        const double radius = radiusAt(at);
        m_path.addEllipse(position(at), radius, radius);
    }

    void addPiece(const Point &from, const Point &to) {
        const QPointF along = position(to) - position(from);
        const double length = std::hypot(along.x(), along.y());
        const QPointF normal = QPointF(-along.y(), along.x()) / length;
        if (!m_lastNormal.isNull()) {
            addJoin(from, normal, along / length);
        }
        addPolygon({position(from) + radiusAt(from) * normal, position(to) + radiusAt(to) * normal,
                    position(to) - radiusAt(to) * normal, position(from) - radiusAt(from) * normal});
        m_lastNormal = normal;
    }

    [[nodiscard]] const QPainterPath &path() const { return m_path; }

private:
    [[nodiscard]] double radiusAt(const Point &point) const {
        const double pressure = std::clamp(point.pressure, 0.0, 1.0);
        return m_width / 2 * (kLightestWidth + (1 - kLightestWidth) * pressure);
    }

    /// Closes the gap on the outer side of a turn.
    void addJoin(const Point &at, QPointF normal, QPointF along) {
        const double turn = QPointF::dotProduct(m_lastNormal, along);
        if (std::abs(turn) > kRoundedTurn || QPointF::dotProduct(m_lastNormal, normal) < 0) {
            addDisc(at);
        } else {
            const double side = turn > 0 ? -radiusAt(at) : radiusAt(at);
            addPolygon({position(at), position(at) + side * m_lastNormal, position(at) + side * normal});
        }
    }

    /// All go round the same way as a disc does: two that went against each other would leave a hole where they lie
    /// over each other.
    void addPolygon(std::initializer_list<QPointF> corners) {
        QPolygonF polygon(corners);
        double area = 0;
        for (qsizetype i = 0; i < polygon.size(); ++i) {
            const QPointF &next = polygon.at((i + 1) % polygon.size());
            area += polygon.at(i).x() * next.y() - next.x() * polygon.at(i).y();
        }
        if (area < 0) {
            std::ranges::reverse(polygon);
        }
        m_path.addPolygon(polygon);
        m_path.closeSubpath();
    }

    double m_width;
    QPainterPath m_path;
    QPointF m_lastNormal;
};

/// Of a width that follows the pressure.
QPainterPath outline(std::span<const Point> points, double width) {
    OutlineBuilder builder(width);
    builder.addDisc(points.front());
    const Point *last = &points.front();
    for (const Point &point : points.subspan(1)) {
        if (QLineF(position(*last), position(point)).length() > kDotSize) {
            builder.addPiece(*last, point);
            last = &point;
        }
    }
    builder.addDisc(*last);
    return builder.path();
}

bool isDot(std::span<const Point> points) {
    return std::ranges::all_of(points, [&points](const Point &point) {
        return QLineF(position(points.front()), position(point)).length() < kDotSize;
    });
}

} // namespace

std::vector<SketchPoint> SketchRenderer::smoothed(std::span<const SketchPoint> points, int samplesPerSegment) {
    if (points.size() < 3 || samplesPerSegment < 1) {
        return {points.begin(), points.end()};
    }
    std::vector<SketchPoint> result;
    result.reserve((points.size() - 1) * std::size_t(samplesPerSegment) + 1);
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const auto [p0, p1, p2, p3] = segmentAt(points, i);
        for (int sample = 0; sample < samplesPerSegment; ++sample) {
            const double t = double(sample) / samplesPerSegment;
            result.push_back({.x = catmullRom(p0.x, p1.x, p2.x, p3.x, t),
                              .y = catmullRom(p0.y, p1.y, p2.y, p3.y, t),
                              .pressure = p1.pressure + (p2.pressure - p1.pressure) * t});
        }
    }
    result.push_back(points.back());
    return result;
}

PathLayer SketchRenderer::stroke(std::span<const SketchPoint> points, const QColor &color, double width,
                                 QPointF origin) {
    const std::vector<SketchPoint> seen = seenFrom(points, origin);
    if (seen.empty()) {
        return {};
    }
    if (isPressedFully(seen) && !isDot(seen)) {
        return {.path = curve(seen), .fill = Qt::NoBrush, .pen = roundPen(color, boundedWidth(width))};
    }
    const int samples = seen.size() > kLongStroke ? kSamplesOfLongStroke : kSamplesPerSegment;
    return smoothStroke(smoothed(seen, samples), color, width);
}

PathLayer SketchRenderer::smoothStroke(std::span<const SketchPoint> points, const QColor &color, double width) {
    if (points.empty()) {
        return {};
    }
    if (isPressedFully(points) && !isDot(points)) {
        return {.path = polyline(points), .fill = Qt::NoBrush, .pen = roundPen(color, boundedWidth(width))};
    }
    return {.path = outline(points, boundedWidth(width)), .fill = color, .pen = Qt::NoPen};
}

QColor SketchRenderer::shownColor(const QString &chosen) {
    const QColor color = Theme::shared().textColor(chosen);
    const bool isGrey = color.hsvSaturationF() < kGreySaturation;
    const double distance = std::abs(color.lightnessF() - Theme::shared().canvas().lightnessF());
    return isGrey && distance < kLostLightness ? Theme::shared().ink() : color;
}

double SketchRenderer::boundedWidth(double width) {
    return std::isfinite(width) ? std::clamp(width, kSmallestWidth, kLargestWidth) : kSmallestWidth;
}

} // namespace tallowby
