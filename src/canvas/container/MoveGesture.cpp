#include "canvas/container/MoveGesture.h"

#include "canvas/model/UndoGroup.h"

#include <utility>

namespace tallowby {

MoveGesture::MoveGesture(std::vector<BlockPtr> blocks, QPointF head)
    : m_blocks(std::move(blocks))
    , m_head(head) {}

void MoveGesture::end(CanvasViewModel &viewModel, QPointF translation) {
    const QPointF offset = dragOffset(translation);
    if (offset.isNull()) {
        return;
    }
    const UndoGroup gesture(viewModel);
    for (const BlockPtr &block : m_blocks) {
        if (block->isLive()) {
            const QPointF dragInitialPos(block->xPosition(), block->yPosition());
            viewModel.updatePosition(block, dragInitialPos, dragInitialPos + offset);
        }
    }
}

} // namespace tallowby
