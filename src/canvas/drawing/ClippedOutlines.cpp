#include "canvas/drawing/ClippedOutlines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace tallowby {

namespace {

/// Beyond the view, so that no edge and no end of a cut outline is seen.
constexpr double kMargin = 8;

/// A half of the plane: what lies at or above `bound`, or, with `sign` -1, at or below it.
struct HalfPlane {
    qreal (QPointF::*coordinate)() const;
    double bound;
    double sign;

    /// Negative outside.
    [[nodiscard]] double depth(const QPointF &point) const { return sign * ((point.*coordinate)() - bound); }
};

std::array<HalfPlane, 4> sidesOf(const QRectF &rect) {
    return {{{&QPointF::x, rect.left(), 1},
             {&QPointF::x, rect.right(), -1},
             {&QPointF::y, rect.top(), 1},
             {&QPointF::y, rect.bottom(), -1}}};
}

/// Sutherland and Hodgman's: side by side, what is outside is put onto the side.
QPolygonF clippedArea(QPolygonF polygon, const QRectF &rect) {
    for (const HalfPlane &side : sidesOf(rect)) {
        QPolygonF inside;
        for (qsizetype i = 0; i < polygon.size(); ++i) {
            const QPointF from = polygon.at(i == 0 ? polygon.size() - 1 : i - 1);
            const QPointF to = polygon.at(i);
            const double fromDepth = side.depth(from);
            const double toDepth = side.depth(to);
            if ((fromDepth < 0) != (toDepth < 0)) {
                inside << from + (to - from) * (fromDepth / (fromDepth - toDepth));
            }
            if (toDepth >= 0) {
                inside << to;
            }
        }
        polygon = inside;
    }
    return polygon;
}

/// Liang and Barsky's: the part of the line in the rectangle, as shares of its length.
std::optional<std::pair<double, double>> partInside(const QPointF &from, const QPointF &to, const QRectF &rect) {
    double first = 0;
    double last = 1;
    for (const HalfPlane &side : sidesOf(rect)) {
        const double fromDepth = side.depth(from);
        const double toDepth = side.depth(to);
        if (fromDepth < 0 && toDepth < 0) {
            return std::nullopt;
        }
        if (fromDepth < 0) {
            first = std::max(first, fromDepth / (fromDepth - toDepth));
        } else if (toDepth < 0) {
            last = std::min(last, fromDepth / (fromDepth - toDepth));
        }
    }
    return first <= last ? std::optional(std::pair(first, last)) : std::nullopt;
}

void addClippedLine(QPainterPath &path, const QPolygonF &line, const QRectF &rect) {
    bool isDrawing = false;
    for (qsizetype i = 1; i < line.size(); ++i) {
        const QPointF from = line.at(i - 1);
        const QPointF along = line.at(i) - from;
        const auto part = partInside(from, line.at(i), rect);
        if (!part) {
            isDrawing = false;
            continue;
        }
        if (!isDrawing || part->first > 0) {
            path.moveTo(from + along * part->first);
        }
        path.lineTo(from + along * part->second);
        isDrawing = part->second >= 1;
    }
}

} // namespace

PathDrawing clippedOutlines(const PathDrawing &drawing, const QTransform &toView, const QRectF &view) {
    const double scale = std::sqrt(std::abs(toView.determinant()));
    std::vector<PathLayer> layers;
    for (const PathLayer &layer : drawing.layers()) {
        QPen pen = layer.pen;
        pen.setWidthF(pen.widthF() * scale);
        QBrush fill = layer.fill;
        fill.setTransform(fill.transform() * toView);
        const double margin = kMargin + (pen.style() == Qt::NoPen ? 0 : 2 * pen.widthF());
        const QRectF rect = view.adjusted(-margin, -margin, margin, margin);
        QPainterPath area;
        area.setFillRule(layer.path.fillRule());
        QPainterPath line;
        const auto polygons = layer.path.toSubpathPolygons(toView);
        for (const QPolygonF &polygon : polygons) {
            if (fill.style() != Qt::NoBrush) {
                area.addPolygon(clippedArea(polygon, rect));
            }
            if (pen.style() != Qt::NoPen) {
                addClippedLine(line, polygon, rect);
            }
        }
        if (!area.isEmpty()) {
            layers.push_back({.path = area, .fill = fill, .pen = Qt::NoPen});
        }
        if (!line.isEmpty()) {
            layers.push_back({.path = line, .fill = Qt::NoBrush, .pen = pen});
        }
    }
    return PathDrawing(std::move(layers));
}

} // namespace tallowby
