#include "canvas/model/BlockGeometry.h"
#include "canvas/model/CanvasViewModel.h"
#include "model/AnyCodable.h"
#include "storage/BlockStorage.h"

#include <unordered_set>

namespace tallowby {

namespace {

/// From so many blocks on, going through all frames once is quicker than looking for each.
constexpr std::size_t kManyBlocks = 8;

} // namespace

void CanvasViewModel::deleteBlock(const BlockPtr &block) {
    endEditing();
    // It may have gone with the end of its editing.
    if (!block->isLive() && !m_isPerformingUndoRedo) {
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
    for (const BlockPtr &block : selected) {
        registerAction(DeleteAction{block});
    }
}

void CanvasViewModel::deleteBlockSilently(const BlockPtr &block) {
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

void CanvasViewModel::restore(const BlockPtr &block) {
    block->setDeletedAt(std::nullopt);
    m_live.insertByDepth(block);
    m_storage.insert(block);
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
        if (selected.size() < kManyBlocks) {
            m_live.noteFrame(*block);
        }
    }
    if (selected.size() >= kManyBlocks) {
        m_live.noteFrames();
    }
    Q_EMIT framesChanged();
    m_storage.save();
}

void CanvasViewModel::updateRotation(const BlockPtr &block, double from, double to) {
    block->setRotation(to);
    m_live.noteFrame(*block);
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
    m_live.noteFrame(block);
    Q_EMIT framesChanged();
}

void CanvasViewModel::moveTo(Block &block, QPointF position) {
    applyFrame(block, {position, frameOf(block).size()});
}

void CanvasViewModel::resizeTo(Block &block, QSizeF size) {
    applyFrame(block, {frameOf(block).topLeft(), size});
}

void CanvasViewModel::shiftPoints(Block &block, QPointF offset) const {
    // Other kinds have no points, and looking for them would read the whole payload, pictures included.
    if (block.blockType() == BlockType::sketch) {
        block.shiftSketchPoints(offset.x(), offset.y());
    }
}

void CanvasViewModel::bringToFront(const BlockPtr &block) {
    if (!m_live.contains(*block) || (block->zIndex() == m_maxZIndex && m_maxZIndex > 0)) {
        return;
    }
    block->setZIndex(takeTopZIndex());
    markEdited(*block);
    m_live.moveToFront(*block);
    m_visibleBlocks.moveToEnd(*block);
    m_storage.save();
}

void CanvasViewModel::sendToBack(const BlockPtr &block) {
    if (!m_live.contains(*block) || (block->zIndex() == m_minZIndex && m_minZIndex < 0)) {
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
