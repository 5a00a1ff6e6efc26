#include "canvas/view/Viewport.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowby {

namespace {

bool isFinite(QPointF point) {
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

} // namespace

bool Viewport::setSize(QSizeF size) {
    return std::exchange(m_size, size) != size;
}

bool Viewport::setScale(double scale) {
    return zoomTo(scale, center());
}

bool Viewport::zoomAroundScreenPoint(QPointF screenPoint, double factor) {
    return zoomTo(m_scale * factor, screenPoint);
}

bool Viewport::zoomTo(double scale, QPointF fixedPoint) {
    if (!std::isfinite(scale) || !isFinite(fixedPoint)) {
        return false;
    }
    const double clamped = std::clamp(scale, kMinZoom, kMaxZoom);
    if (clamped == m_scale) {
        return false;
    }
    const double ratio = clamped / m_scale;
    m_offset = (1 - ratio) * (fixedPoint - center()) + ratio * m_offset;
    m_scale = clamped;
    return true;
}

bool Viewport::pan(QPointF screenDelta) {
    if (!isFinite(screenDelta) || screenDelta.isNull()) {
        return false;
    }
    m_offset += screenDelta;
    return true;
}

bool Viewport::needsCulling() const {
    const QPointF moved = m_offset - m_lastVisibilityOffset;
    return m_size != m_lastVisibilitySize || m_scale != m_lastVisibilityScale ||
           std::max(std::abs(moved.x()), std::abs(moved.y())) > kCullingDistance;
}

void Viewport::noteCulled() {
    m_lastVisibilityOffset = m_offset;
    m_lastVisibilitySize = m_size;
    m_lastVisibilityScale = m_scale;
}

} // namespace tallowby
