#include "canvas/model/BlockGeometry.h"

#include <QTransform>

namespace tallowby {

namespace {

QTransform turnOf(const Block &block, double degrees) {
    const QPointF center = frameOf(block).center();
    return QTransform().translate(center.x(), center.y()).rotate(degrees).translate(-center.x(), -center.y());
}

} // namespace

QRectF frameOf(const Block &block) {
    return {block.xPosition(), block.yPosition(), block.width(), block.height()};
}

QRectF reachOf(const Block &block) {
    const QRectF frame = frameOf(block);
    return block.rotation() == 0 ? frame : frame.united(turnOf(block, block.rotation()).mapRect(frame));
}

QRectF boundsOf(const Block &block) {
    const QRectF frame = frameOf(block);
    return block.rotation() == 0 ? frame : turnOf(block, block.rotation()).mapRect(frame);
}

bool meet(const QRectF &a, const QRectF &b) {
    return a.left() < b.right() && b.left() < a.right() && a.top() < b.bottom() && b.top() < a.bottom();
}

bool holds(const Block &block, QPointF canvasPoint, QSizeF smallest) {
    QRectF frame = frameOf(block);
    frame.setSize(frame.size().expandedTo(smallest));
    return frame.contains(block.rotation() == 0 ? canvasPoint : turnOf(block, -block.rotation()).map(canvasPoint));
}

bool touches(const Block &block, const QRectF &rect) {
    const QRectF frame = frameOf(block);
    if (block.rotation() == 0) {
        return meet(frame, rect);
    }
    // Two rectangles are apart when they are along the sides of either of them.
    return meet(turnOf(block, block.rotation()).mapRect(frame), rect) &&
           meet(frame, turnOf(block, -block.rotation()).mapRect(rect));
}

} // namespace tallowby
