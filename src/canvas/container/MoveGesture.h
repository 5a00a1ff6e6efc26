#pragma once

#include "model/Block.h"

#include <QPointF>

#include <vector>

namespace tallowby {

class CanvasViewModel;

/// Blocks being dragged to another place. Their stored positions do not change before the end, which commits one change
/// a block; until then whoever shows them draws them shifted by `dragOffset`.
class MoveGesture {
public:
    MoveGesture() = default;
    /// `head` is how far the blocks have been shifted before they are dragged at all, as copies lie beside what they
    /// were made of: it is taken back from the drag.
    explicit MoveGesture(std::vector<BlockPtr> blocks, QPointF head = {});

    [[nodiscard]] const std::vector<BlockPtr> &blocks() const { return m_blocks; }
    /// In canvas points, for a drag so far.
    [[nodiscard]] QPointF dragOffset(QPointF translation) const { return translation - m_head; }
    void end(CanvasViewModel &viewModel, QPointF translation);

private:
    std::vector<BlockPtr> m_blocks;
    QPointF m_head;
};

} // namespace tallowby
