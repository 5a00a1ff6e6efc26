#include "canvas/model/CanvasViewModel.h"

#include "canvas/model/BlockGeometry.h"
#include "canvas/model/ReadingOrder.h"
#include "platform/AppEvents.h"
#include "platform/Scheduler.h"
#include "storage/BlockStorage.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_set>
#include <utility>

namespace tallowby {

CanvasViewModel::CanvasViewModel(BlockStorage &storage, DebouncedSaver &saver, NotificationCenter &notifications,
                                 Scheduler &scheduler, Pasteboard &pasteboard)
    : m_storage(storage)
    , m_saver(saver)
    , m_scheduler(scheduler)
    , m_pasteboard(pasteboard)
    , m_deselectObservation(notifications.observe(events::deselectAllBlocks,
                                                  [this](const Notification &) {
                                                      endEditing();
                                                      deselectAll();
                                                  }))
    , m_turnObservation(notifications.observe(events::flipReversing, [this](const Notification &) {
        // Whoever comes back points elsewhere, and what is typed then is meant for there.
        endEditing();
    })) {
    refreshBlocks();
    recomputeZIndexes();
}

void CanvasViewModel::refreshBlocks() {
    m_live.assign(m_storage.fetch(&Block::isLive));
    if (!isEmpty()) {
        // Blocks from elsewhere may be above all that were known; a new one still has to come on top.
        m_maxZIndex = std::max<std::int64_t>(m_maxZIndex, blocks().back()->zIndex());
        m_minZIndex = std::min<std::int64_t>(m_minZIndex, blocks().front()->zIndex());
    }
    std::vector<BlockPtr> selected;
    std::ranges::copy_if(blocks(), std::back_inserter(selected), &Block::isSelected,
                         [](const BlockPtr &block) -> const Block & { return *block; });
    setSelection(std::move(selected));
    if (m_focusedBlock && !m_focusedBlock->isLive()) {
        setFocusedBlock(nullptr);
    }
    m_visibleBlocks.assign(blocksInViewport());
    Q_EMIT blocksChanged();
}

void CanvasViewModel::updateVisibleBlocks(const QRectF &viewport, double scale) {
    const double margin = kCullingMargin / scale;
    m_culledRect = viewport.adjusted(-margin, -margin, margin, margin);
    m_visibleBlocks.assign(blocksInViewport());
}

void CanvasViewModel::showShifted(const std::vector<BlockPtr> &shifted, QPointF offset) {
    if (shifted != m_shiftedBlocks) {
        m_shiftedBlocks = shifted;
        m_shift.blocks.clear();
        std::ranges::transform(shifted, std::inserter(m_shift.blocks, m_shift.blocks.end()), &BlockPtr::get);
    }
    m_shift.offset = offset;
    if (!shifted.empty()) {
        m_visibleBlocks.assign(blocksInViewport());
    }
}

std::vector<BlockPtr> CanvasViewModel::blocksInViewport() const {
    return m_culledRect ? m_live.meeting(*m_culledRect, kSmallestCulledSize, m_focusedBlock.get(), m_shift) : blocks();
}

BlockPtr CanvasViewModel::blockAt(QPointF canvasPoint) const {
    const auto &visible = visibleBlocks();
    const auto found = std::find_if(visible.rbegin(), visible.rend(),
                                    [canvasPoint](const BlockPtr &block) { return holds(*block, canvasPoint); });
    return found == visible.rend() ? nullptr : *found;
}

std::vector<BlockPtr> CanvasViewModel::blocksIn(const QRectF &rect) const {
    std::vector<BlockPtr> found = m_live.meeting(rect);
    std::erase_if(found, [&rect](const BlockPtr &block) { return !touches(*block, rect); });
    return found;
}

BlockPtr CanvasViewModel::nextInReadingOrder(const BlockPtr &from, ReadingDirection direction) const {
    if (isEmpty()) {
        return nullptr;
    }
    const std::vector<BlockPtr> read = inReadingOrder(blocks());
    const auto at = std::ranges::find(read, from);
    if (direction == ReadingDirection::forward) {
        return at == read.end() || at + 1 == read.end() ? read.front() : *(at + 1);
    }
    return at == read.end() || at == read.begin() ? read.back() : *(at - 1);
}

void CanvasViewModel::setActiveTool(const CanvasTool &tool) {
    if (m_activeTool != tool) {
        m_activeTool = tool;
        Q_EMIT activeToolChanged();
    }
}

void CanvasViewModel::setToolLocked(bool isLocked) {
    if (m_toolLocked != isLocked) {
        m_toolLocked = isLocked;
        Q_EMIT toolLockedChanged();
    }
}

void CanvasViewModel::setPencilColor(const QString &color) {
    if (m_pencilColor != color) {
        m_pencilColor = color;
        Q_EMIT pencilColorChanged();
    }
}

void CanvasViewModel::setPencilWidth(double width) {
    if (m_pencilWidth != width && std::isfinite(width)) {
        m_pencilWidth = width;
        Q_EMIT pencilWidthChanged();
    }
}

void CanvasViewModel::setRightClickCursorPos(QPointF canvasPoint) {
    if (m_rightClickCursorPos != canvasPoint) {
        m_rightClickCursorPos = canvasPoint;
        Q_EMIT rightClickCursorPosChanged();
    }
}

void CanvasViewModel::selectOnly(const BlockPtr &block) {
    setSelection({block});
}

void CanvasViewModel::select(std::vector<BlockPtr> blocks) {
    std::erase_if(blocks, [](const BlockPtr &block) { return !block->isLive(); });
    setSelection(std::move(blocks));
}

void CanvasViewModel::toggleSelection(const BlockPtr &block) {
    std::vector<BlockPtr> selected = m_selectedBlocks;
    if (std::erase(selected, block) == 0) {
        selected.push_back(block);
    }
    setSelection(std::move(selected));
}

void CanvasViewModel::selectAll() {
    setSelection(blocks());
}

void CanvasViewModel::deselectAll() {
    setSelection({});
}

void CanvasViewModel::selectIn(const QRectF &marquee, const std::vector<BlockPtr> &kept) {
    std::unordered_set<const Block *> known;
    std::vector<BlockPtr> selected = kept;
    for (const BlockPtr &block : kept) {
        known.insert(block.get());
    }
    for (BlockPtr &block : blocksIn(marquee)) {
        if (!known.contains(block.get())) {
            selected.push_back(std::move(block));
        }
    }
    setSelection(std::move(selected));
}

void CanvasViewModel::setSelection(std::vector<BlockPtr> blocks) {
    if (blocks == m_selectedBlocks) {
        return;
    }
    const std::vector<BlockPtr> previous = std::exchange(m_selectedBlocks, std::move(blocks));
    std::unordered_set<const Block *> selected;
    for (const BlockPtr &block : m_selectedBlocks) {
        selected.insert(block.get());
    }
    for (const BlockPtr &block : previous) {
        block->setIsSelected(selected.contains(block.get()));
    }
    for (const BlockPtr &block : m_selectedBlocks) {
        block->setIsSelected(true);
    }
    Q_EMIT selectionChanged();
}

std::vector<BlockPtr> CanvasViewModel::selectedInPaintOrder() const {
    if (m_selectedBlocks.size() < 2) {
        return m_selectedBlocks;
    }
    std::vector<BlockPtr> selected;
    std::ranges::copy_if(blocks(), std::back_inserter(selected), &Block::isSelected,
                         [](const BlockPtr &block) -> const Block & { return *block; });
    return selected;
}

QUuid CanvasViewModel::ownerOfNewBlocks() const {
    return m_storage.currentUserId().value_or(QUuid::createUuid());
}

void CanvasViewModel::recomputeZIndexes() {
    m_maxZIndex = 0;
    m_minZIndex = 0;
    if (!isEmpty()) {
        const auto [lowest, highest] = std::ranges::minmax(blocks(), {}, [](const BlockPtr &b) { return b->zIndex(); });
        m_maxZIndex = highest->zIndex();
        m_minZIndex = lowest->zIndex();
    }
}

// A record from elsewhere may hold the largest number there is, or the smallest; then blocks share it, in the order in
// which they came there.

std::int64_t CanvasViewModel::takeTopZIndex() {
    if (m_maxZIndex < std::numeric_limits<std::int64_t>::max()) {
        ++m_maxZIndex;
    }
    return m_maxZIndex;
}

std::int64_t CanvasViewModel::takeBottomZIndex() {
    if (m_minZIndex > std::numeric_limits<std::int64_t>::min()) {
        --m_minZIndex;
    }
    return m_minZIndex;
}

Timestamp CanvasViewModel::now() const {
    return Timestamp::from(m_scheduler.now());
}

void CanvasViewModel::markEdited(Block &block) const {
    block.setUpdatedAt(now());
    block.setNeedsSync(true);
}

} // namespace tallowby
