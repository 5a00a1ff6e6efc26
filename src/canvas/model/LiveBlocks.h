#pragma once

#include "model/Block.h"

#include <QRectF>

#include <optional>
#include <unordered_set>
#include <vector>

namespace tallowby {

/// The live blocks of the canvas in paint order, and how far each of them reaches. Reaches lie side by side in memory,
/// so that a plain pass over a hundred thousand of them takes a fraction of a millisecond. Whoever changes the frame,
/// the rotation or the depth of a block says so here.
class LiveBlocks {
public:
    /// Blocks that are drawn that far, in canvas points, from where they are.
    struct Shift {
        std::unordered_set<const Block *> blocks;
        QPointF offset;
    };

    /// Later ones are drawn above earlier ones.
    [[nodiscard]] const std::vector<BlockPtr> &inPaintOrder() const { return m_blocks; }
    [[nodiscard]] bool contains(const Block &block) const { return indexOf(block).has_value(); }
    [[nodiscard]] std::optional<std::size_t> indexOf(const Block &block) const;

    /// Sorts by depth; blocks of equal depth keep their order.
    void assign(std::vector<BlockPtr> blocks);
    /// On top of all others, whatever its depth.
    void append(const BlockPtr &block);
    /// Each at the place that its depth gives it, above those of the same depth. One that is there already stays.
    void insertByDepth(const std::vector<BlockPtr> &blocks);
    /// Each of these does nothing when the block is not there.
    void remove(const Block &block);
    void removeAll(const std::unordered_set<const Block *> &blocks);
    void moveToFront(const Block &block);
    void moveToBack(const Block &block);
    /// To be called after a change of the frame or the rotation.
    void updateReach(const Block &block);
    void updateReaches(const std::vector<BlockPtr> &blocks);

    /// Those whose frame, enlarged to `smallest` at least, meets the rectangle, in paint order. A turned block counts
    /// where it is drawn, too, a shifted one only there, and `always` wherever it is.
    [[nodiscard]] std::vector<BlockPtr> meeting(const QRectF &rect, QSizeF smallest = {0, 0},
                                                const Block *always = nullptr, const Shift &shift = {}) const;

private:
    std::vector<BlockPtr> m_blocks;
    /// In the order of `m_blocks`.
    std::vector<QRectF> m_reaches;
};

} // namespace tallowby
