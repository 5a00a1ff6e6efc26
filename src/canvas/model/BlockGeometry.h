#pragma once

#include "model/Block.h"

#include <QRectF>

namespace tallowby {

/// The rectangle of a block before it is turned about its centre.
[[nodiscard]] QRectF frameOf(const Block &block);
/// The upright rectangle that holds the frame and, where it differs, the turned frame.
[[nodiscard]] QRectF reachOf(const Block &block);
/// The upright rectangle around the turned frame alone.
[[nodiscard]] QRectF boundsOf(const Block &block);
/// Comparisons only, so that sizes too large to be added up still count. Rectangles that only touch do not meet.
[[nodiscard]] bool meet(const QRectF &a, const QRectF &b);
/// Whether the turned frame, `smallest` at least, holds the point.
[[nodiscard]] bool holds(const Block &block, QPointF canvasPoint, QSizeF smallest = {0, 0});
/// Whether the turned frame and the upright rectangle have any point in common.
[[nodiscard]] bool touches(const Block &block, const QRectF &rect);

} // namespace tallowby
