#include "canvas/container/ContainerRows.h"

#include "canvas/model/BlockGeometry.h"
#include "canvas/view/InfiniteCanvasView.h"

#include <algorithm>
#include <unordered_set>

namespace tallowby {

ContainerRows::ContainerRows(InfiniteCanvasView &view)
    : m_view(view)
    , m_frames(view, [this] { return takeMore(); }) {}

bool ContainerRows::isNeeded(const Block &block) const {
    const CanvasViewModel &viewModel = m_view.viewModel();
    if (viewModel.isSpawning(block) || viewModel.focusedBlock().get() == &block) {
        return true;
    }
    const QRectF reach = reachOf(block).translated(m_view.dragOffsetOf(block).value_or(QPointF()));
    // It may not have been measured yet.
    return meet({reach.topLeft(), reach.size().expandedTo(CanvasViewModel::kSmallestCulledSize)},
                m_view.viewport().visibleRect());
}

void ContainerRows::update() {
    m_isOutdated = true;
    // A container that is being made may end the editing of its block.
    while (m_isOutdated && !m_isTaking) {
        m_isOutdated = false;
        m_isTaking = true;
        take(m_view.window() ? 0 : m_view.viewModel().visibleBlocks().size());
        m_isTaking = false;
    }
    if (!m_waiting.empty()) {
        m_frames.begin();
    }
}

bool ContainerRows::takeMore() {
    m_isTaking = true;
    take(kRowsPerFrame);
    m_isTaking = false;
    if (m_isOutdated) {
        update();
    }
    return !m_waiting.empty();
}

void ContainerRows::viewMoved() {
    if (std::ranges::any_of(m_waiting, [this](const BlockPtr &block) { return isNeeded(*block); })) {
        update();
    }
}

void ContainerRows::take(std::size_t others) {
    std::unordered_set<const Block *> taken;
    std::ranges::transform(m_rows.blocks(), std::inserter(taken, taken.end()), &BlockPtr::get);
    std::vector<BlockPtr> rows;
    m_waiting.clear();
    for (const BlockPtr &block : m_view.viewModel().visibleBlocks()) {
        if (taken.contains(block.get()) || isNeeded(*block)) {
            rows.push_back(block);
        } else if (others > 0) {
            --others;
            rows.push_back(block);
        } else {
            m_waiting.push_back(block);
        }
    }
    m_rows.assign(rows);
}

} // namespace tallowby
