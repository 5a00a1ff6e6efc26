#include "canvas/drawing/PathDrawing.h"

#include <QPainter>

#include <algorithm>

namespace tallowby {

namespace {

/// How far a pen reaches beyond its path.
double reach(const PathLayer &layer) {
    if (layer.pen.style() == Qt::NoPen) {
        return 0;
    }
    const double half = layer.pen.widthF() / 2;
    return layer.pen.joinStyle() == Qt::MiterJoin ? half * std::min(layer.pen.miterLimit(), 4.0) : half;
}

QRectF inked(const PathLayer &layer) {
    const double margin = reach(layer);
    return layer.path.controlPointRect().adjusted(-margin, -margin, margin, margin);
}

} // namespace

PathDrawing::PathDrawing(std::vector<PathLayer> layers)
    : m_layers(std::move(layers)) {
    for (const PathLayer &layer : m_layers) {
        // A straight line has no area of its own, and nothing is united with an empty rectangle.
        m_bounds = m_bounds.isEmpty() ? inked(layer) : m_bounds.united(inked(layer));
    }
}

void PathDrawing::paint(QPainter &painter) const {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    bool isInvertible = false;
    const QRectF seen = painter.transform().inverted(&isInvertible).mapRect(QRectF(painter.window()));
    for (const PathLayer &layer : m_layers) {
        // The painter would prepare a whole line before it finds nothing of it in sight.
        if (isInvertible && !inked(layer).intersects(seen)) {
            continue;
        }
        painter.setPen(layer.pen);
        painter.setBrush(layer.fill);
        painter.drawPath(layer.path);
    }
}

PathDrawing PathDrawing::apart() const {
    PathDrawing copy = *this;
    for (PathLayer &layer : copy.m_layers) {
        // Only a change parts a path from its copies; asking for the bounds, or painting, does not.
        const Qt::FillRule rule = layer.path.fillRule();
        layer.path.setFillRule(rule == Qt::WindingFill ? Qt::OddEvenFill : Qt::WindingFill);
        layer.path.setFillRule(rule);
    }
    return copy;
}

} // namespace tallowby
