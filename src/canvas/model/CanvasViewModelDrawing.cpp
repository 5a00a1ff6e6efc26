#include "canvas/model/BlockGeometry.h"
#include "canvas/model/CanvasViewModel.h"
#include "storage/BlockStorage.h"

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// From the first point of a sketch to the corner of its still empty block.
constexpr QPointF kSketchCorner{20, 20};
/// Blocks can be erased however thin they are.
constexpr QSizeF kSmallestErased{1, 1};

QSizeF ordinarySize(ShapeType type) {
    return type == ShapeType::line ? CanvasViewModel::kSpawnedLineSize : CanvasViewModel::kDrawnShapeSize;
}

} // namespace

BlockPtr CanvasViewModel::beginSketch(QPointF at) {
    const BlockPtr block = Block::sketch(ownerOfNewBlocks(), at - kSketchCorner);
    place(block);
    selectOnly(block);
    return block;
}

void CanvasViewModel::commitStroke(const BlockPtr &block, std::span<const SketchPoint> points, const QString &color,
                                   double width) {
    if (points.size() < 2) {
        return;
    }
    block->setDeletedAt(std::nullopt);
    if (!m_live.contains(*block)) {
        m_live.insertByDepth({block});
        m_visibleBlocks.append(block);
        Q_EMIT blocksChanged();
    }
    auto strokes = block->sketchStrokes();
    strokes.push_back({.points = {points.begin(), points.end()}, .color = color, .width = width});
    block->setSketchStrokes(strokes);
    block->recomputeSketchBounds(kSketchPadding);
    m_live.updateReach(*block);
    Q_EMIT framesChanged();
    // The empty block may have been uploaded while the stroke was being drawn.
    markEdited(*block);
    m_storage.save();
}

void CanvasViewModel::eraseAt(QPointF at) {
    BlockPtr topmost;
    for (const BlockPtr &block : m_live.meeting(QRectF(at, at).adjusted(-1, -1, 1, 1), kSmallestErased)) {
        if (holds(*block, at, kSmallestErased) && (!topmost || block->zIndex() > topmost->zIndex())) {
            topmost = block;
        }
    }
    if (topmost) {
        deleteBlock(topmost);
    }
}

BlockPtr CanvasViewModel::beginShapeDraw(ShapeType shapeType, QPointF at) {
    const auto block = std::make_shared<Block>(ownerOfNewBlocks(), BlockType::shape, QRectF(at, QSizeF(1, 1)));
    block->setShapeType(shapeType);
    place(block);
    selectOnly(block);
    return block;
}

void CanvasViewModel::updateShapeDrawFrame(const BlockPtr &block, QPointF start, QPointF current) {
    const QPointF corner(std::min(start.x(), current.x()), std::min(start.y(), current.y()));
    const QSizeF size(std::max(std::abs(current.x() - start.x()), 1.0),
                      std::max(std::abs(current.y() - start.y()), 1.0));
    setFrameDuringGesture(*block, {corner, size});
}

void CanvasViewModel::finalizeShapeDraw(const BlockPtr &block) {
    const QRectF drawn = frameOf(*block);
    if (drawn.width() < kSmallestDrawnShape && drawn.height() < kSmallestDrawnShape) {
        QRectF ordinary(drawn.topLeft(), ordinarySize(block->shapeType()));
        ordinary.moveCenter(drawn.topLeft());
        applyFrame(*block, ordinary);
    }
    markEdited(*block);
    registerAction(AddAction{block});
    m_storage.save();
}

} // namespace tallowby
