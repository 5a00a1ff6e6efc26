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

} // namespace

PathDrawing::PathDrawing(std::vector<PathLayer> layers)
    : m_layers(std::move(layers)) {
    for (const PathLayer &layer : m_layers) {
        const double margin = reach(layer);
        // A straight line has no area of its own, and nothing is united with an empty rectangle.
        const QRectF inked = layer.path.controlPointRect().adjusted(-margin, -margin, margin, margin);
        m_bounds = m_bounds.isEmpty() ? inked : m_bounds.united(inked);
    }
}

void PathDrawing::paint(QPainter &painter) const {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    for (const PathLayer &layer : m_layers) {
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
