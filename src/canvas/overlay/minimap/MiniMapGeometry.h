#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace tallowby {

/// Where the canvas lies on the mini map: the world, that is all blocks and what the view shows with a margin around
/// them, is scaled evenly into the map and centred in it. Arithmetic only.
struct MiniMapGeometry {
    /// Around blocks and viewport, in canvas points.
    static constexpr double kWorldMargin = 500;

    /// The rectangle around all blocks, in canvas points; null without blocks.
    QRectF blocks;
    /// Where the canvas origin is drawn in the view, relative to the view's centre.
    QPointF offset;
    /// Screen points per canvas point.
    double scale = 1;
    QSizeF viewportSize;
    QSizeF mapSize;
    /// Between the map's edge and the world.
    double padding = 0;

    /// What the view shows, in canvas points.
    [[nodiscard]] QRectF visibleRect() const;
    [[nodiscard]] QRectF worldRect() const;
    /// Whether some part of a block is out of sight.
    [[nodiscard]] bool hasBlocksOutside() const;

    [[nodiscard]] QRectF toMap(const QRectF &canvasRect) const;
    [[nodiscard]] QPointF toCanvas(QPointF mapPoint) const;
    /// The offset that puts the canvas point at the view's centre.
    [[nodiscard]] QPointF offsetShowing(QPointF canvasPoint) const { return -scale * canvasPoint; }

private:
    /// Map points per canvas point.
    [[nodiscard]] double factor() const;
};

} // namespace tallowby
