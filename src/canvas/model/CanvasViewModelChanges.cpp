#include "canvas/model/BlockGeometry.h"
#include "canvas/model/UndoGroup.h"
#include "model/AnyCodable.h"
#include "storage/BlockStorage.h"

#include <algorithm>
#include <unordered_set>

namespace tallowby {

void CanvasViewModel::deleteBlock(BlockPtr block) {
    endEditing();
    // It may have gone with the end of its editing.
    if (!block->isLive()) {
        return;
    }
    softDelete({block});
    registerAction(DeleteAction{block});
}

void CanvasViewModel::deleteSelected() {
    endEditing();
    const std::vector<BlockPtr> selected = selectedInPaintOrder();
    if (selected.empty()) {
        return;
    }
    softDelete(selected);
    const UndoGroup gesture(*this);
    for (const BlockPtr &block : selected) {
        registerAction(DeleteAction{block});
    }
}

void CanvasViewModel::deleteBlockSilently(BlockPtr block) {
    block->setDeletedAt(now());
    removeFromCanvas({block});
    m_storage.save();
}

void CanvasViewModel::softDelete(const std::vector<BlockPtr> &blocks) {
    const Timestamp deletedAt = now();
    for (const BlockPtr &block : blocks) {
        block->setDeletedAt(deletedAt);
        block->setNeedsSync(true);
    }
    removeFromCanvas(blocks);
    Q_EMIT cursorResetRequested();
    m_storage.save();
}

void CanvasViewModel::removeFromCanvas(const std::vector<BlockPtr> &blocks) {
    std::unordered_set<const Block *> gone;
    for (const BlockPtr &block : blocks) {
        gone.insert(block.get());
    }
    std::vector<BlockPtr> selected = m_selectedBlocks;
    std::erase_if(selected, [&gone](const BlockPtr &block) { return gone.contains(block.get()); });
    setSelection(std::move(selected));
    if (blocks.size() == 1) {
        m_live.remove(*blocks.front());
    } else {
        m_live.removeAll(gone);
    }
    m_visibleBlocks.removeAll(gone);
    Q_EMIT blocksChanged();
}

void CanvasViewModel::restore(const std::vector<BlockPtr> &blocks) {
    for (const BlockPtr &block : blocks) {
        block->setDeletedAt(std::nullopt);
        m_storage.insert(block);
        // Meanwhile the counters may have been set to those of the other blocks.
        m_maxZIndex = std::max<std::int64_t>(m_maxZIndex, block->zIndex());
        m_minZIndex = std::min<std::int64_t>(m_minZIndex, block->zIndex());
    }
    m_live.insertByDepth(blocks);
    Q_EMIT blocksChanged();
}

void CanvasViewModel::updatePosition(const BlockPtr &block, QPointF from, QPointF to) {
    moveTo(*block, to);
    shiftPoints(*block, to - from);
    markEdited(*block);
    registerAction(MoveAction{block, from, to});
    m_storage.save();
}

void CanvasViewModel::moveSelectedBlocks(double dx, double dy) {
    const std::vector<BlockPtr> selected = selectedInPaintOrder();
    if (selected.empty()) {
        return;
    }
    const QPointF offset(dx, dy);
    for (const BlockPtr &block : selected) {
        const QPointF from(block->xPosition(), block->yPosition());
        block->setXPosition(from.x() + dx);
        block->setYPosition(from.y() + dy);
        shiftPoints(*block, offset);
        markEdited(*block);
        registerAction(MoveAction{block, from, from + offset});
    }
    m_live.updateReaches(selected);
    Q_EMIT framesChanged();
    Q_EMIT cullingRequested();
    m_storage.save();
}

void CanvasViewModel::updateRotation(const BlockPtr &block, double from, double to) {
    block->setRotation(to);
    m_live.updateReach(*block);
    Q_EMIT framesChanged();
    markEdited(*block);
    registerAction(RotateAction{block, from, to});
    m_storage.save();
}

void CanvasViewModel::setFrameDuringGesture(Block &block, const QRectF &frame) {
    applyFrame(block, frame);
}

void CanvasViewModel::settleFrame(Block &block, const QRectF &frame) {
    applyFrame(block, frame);
}

void CanvasViewModel::commitTransform(const BlockPtr &block, const QRectF &from, const QRectF &to) {
    applyFrame(*block, to);
    if (from == to) {
        return;
    }
    markEdited(*block);
    registerAction(TransformAction{block, from.topLeft(), to.topLeft(), from.size(), to.size()});
    m_storage.save();
}

void CanvasViewModel::setPayloadValue(Block &block, const QString &key, const AnyCodable &value) {
    const QByteArray before = block.content();
    block.setContentField(key, value);
    if (block.content() != before) {
        markEdited(block);
        m_storage.save();
    }
}

void CanvasViewModel::applyFrame(Block &block, const QRectF &frame) {
    block.setXPosition(frame.x());
    block.setYPosition(frame.y());
    block.setWidth(frame.width());
    block.setHeight(frame.height());
    m_live.updateReach(block);
    Q_EMIT framesChanged();
}

void CanvasViewModel::moveTo(Block &block, QPointF position) {
    applyFrame(block, {position, frameOf(block).size()});
}

void CanvasViewModel::shiftPoints(Block &block, QPointF offset) {
    // Other kinds have no points, and looking for them would read the whole payload, pictures included.
    if (block.blockType() == BlockType::sketch) {
        block.shiftSketchPoints(offset.x(), offset.y());
    }
}

void CanvasViewModel::bringToFront(BlockPtr block) {
    // Two machines may have given the top depth to a block each.
    const bool isTop = !isEmpty() && blocks().back() == block && block->zIndex() == m_maxZIndex && m_maxZIndex > 0;
    if (isTop || !m_live.contains(*block)) {
        return;
    }
    block->setZIndex(takeTopZIndex());
    markEdited(*block);
    m_live.moveToFront(*block);
    m_visibleBlocks.moveToEnd(*block);
    m_storage.save();
}

void CanvasViewModel::sendToBack(BlockPtr block) {
    const bool isBottom = !isEmpty() && blocks().front() == block && block->zIndex() == m_minZIndex && m_minZIndex < 0;
    if (isBottom || !m_live.contains(*block)) {
        return;
    }
    block->setZIndex(takeBottomZIndex());
    markEdited(*block);
    m_live.moveToBack(*block);
    m_visibleBlocks.moveToStart(*block);
    m_storage.save();
}

void CanvasViewModel::toggleFlipHorizontal(const BlockPtr &block) {
    setFlip(*block, QStringLiteral("flipHorizontal"), !block->flipHorizontal());
}

void CanvasViewModel::toggleFlipVertical(const BlockPtr &block) {
    setFlip(*block, QStringLiteral("flipVertical"), !block->flipVertical());
}

void CanvasViewModel::setFlip(Block &block, const QString &key, bool isFlipped) {
    block.setContentField(key, isFlipped);
    markEdited(block);
    m_storage.save();
}

} // namespace tallowby
