#include "canvas/overlay/minimap/MiniMapGeometry.h"

#include <algorithm>

namespace tallowby {

namespace {

/// What an empty canvas counts as.
constexpr QRectF kEmptyWorld{-1000, -1000, 2000, 2000};

QRectF centredOn(QPointF center, QSizeF size) {
    return {center.x() - size.width() / 2, center.y() - size.height() / 2, size.width(), size.height()};
}

} // namespace

QRectF MiniMapGeometry::visibleRect() const {
    return centredOn(-offset / scale, viewportSize / scale);
}

QRectF MiniMapGeometry::worldRect() const {
    return blocks.isNull()
               ? kEmptyWorld
               : blocks.united(visibleRect()).adjusted(-kWorldMargin, -kWorldMargin, kWorldMargin, kWorldMargin);
}

bool MiniMapGeometry::hasBlocksOutside() const {
    return !blocks.isNull() && !visibleRect().contains(blocks);
}

double MiniMapGeometry::factor() const {
    const QSizeF world = worldRect().size();
    return std::min((mapSize.width() - 2 * padding) / world.width(), (mapSize.height() - 2 * padding) / world.height());
}

QRectF MiniMapGeometry::toMap(const QRectF &canvasRect) const {
    const double mapped = factor();
    const QPointF center = QPointF(mapSize.width(), mapSize.height()) / 2;
    return {center + mapped * (canvasRect.topLeft() - worldRect().center()), mapped * canvasRect.size()};
}

QPointF MiniMapGeometry::toCanvas(QPointF mapPoint) const {
    const QPointF center = QPointF(mapSize.width(), mapSize.height()) / 2;
    return worldRect().center() + (mapPoint - center) / factor();
}

} // namespace tallowby
