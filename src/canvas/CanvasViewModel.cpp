#include "canvas/CanvasViewModel.h"

#include "platform/AppEvents.h"
#include "platform/Scheduler.h"
#include "storage/BlockStorage.h"
#include "storage/DebouncedSaver.h"

#include <QTransform>

#include <algorithm>
#include <limits>
#include <unordered_set>
#include <utility>

namespace tallowby {

namespace {

/// From the pointer to the top-left corner of the text block that is typed there.
constexpr QPointF kSpawnedTextOffset{50, 12};

QRectF frameOf(const Block &block) {
    return {block.xPosition(), block.yPosition(), block.width(), block.height()};
}

QRectF culledFrameOf(const QRectF &frame) {
    return {frame.topLeft(), frame.size().expandedTo(CanvasViewModel::kSmallestCulledSize)};
}

/// Comparisons only, so that sizes too large to be added up still count as in view.
bool intersects(const QRectF &a, const QRectF &b) {
    return a.left() < b.right() && b.left() < a.right() && a.top() < b.bottom() && b.top() < a.bottom();
}

bool holds(const Block &block, QPointF canvasPoint) {
    const QRectF frame = frameOf(block);
    if (block.rotation() == 0) {
        return frame.contains(canvasPoint);
    }
    const QPointF fromCenter = canvasPoint - frame.center();
    return frame.contains(frame.center() + QTransform().rotate(-block.rotation()).map(fromCenter));
}

} // namespace

CanvasViewModel::CanvasViewModel(BlockStorage &storage, DebouncedSaver &saver, NotificationCenter &notifications,
                                 const Scheduler &scheduler)
    : m_storage(storage)
    , m_saver(saver)
    , m_scheduler(scheduler)
    , m_deselectObservation(notifications.observe(events::deselectAllBlocks, [this](const Notification &) {
        endEditing();
        deselectAll();
    })) {
    refreshBlocks();
    if (!m_blocks.empty()) {
        m_maxZIndex = m_blocks.back()->zIndex();
    }
}

BlockPtr CanvasViewModel::blockAt(QPointF canvasPoint) const {
    const auto &visible = visibleBlocks();
    const auto found = std::find_if(visible.rbegin(), visible.rend(),
                                    [canvasPoint](const BlockPtr &block) { return holds(*block, canvasPoint); });
    return found == visible.rend() ? nullptr : *found;
}

BlockPtr CanvasViewModel::spawnBlock(QPointF at, BlockType type, const QString &initialText) {
    if (type != BlockType::text) {
        return nullptr;
    }
    endEditing();
    const QUuid userId = m_storage.currentUserId().value_or(QUuid::createUuid());
    const BlockPtr block = Block::text(userId, at - kSpawnedTextOffset, initialText);
    block->setWidth(kSpawnedTextSize.width());
    block->setHeight(kSpawnedTextSize.height());
    block->setZIndex(takeTopZIndex());
    m_storage.insert(block);
    m_blocks.push_back(block);
    m_frames.push_back(frameOf(*block));
    m_spawningBlock = block.get();
    m_visibleBlocks.append(block);
    m_spawningBlock = nullptr;
    m_storage.save();
    selectOnly(block);
    setFocusedBlock(block);
    Q_EMIT blocksChanged();
    return block;
}

void CanvasViewModel::deleteBlock(const BlockPtr &block) {
    if (m_focusedBlock == block) {
        setFocusedBlock(nullptr);
    }
    softDelete({block});
}

void CanvasViewModel::deleteSelected() {
    if (m_selectedBlocks.empty()) {
        return;
    }
    endEditing();
    softDelete(std::vector(m_selectedBlocks));
}

void CanvasViewModel::softDelete(const std::vector<BlockPtr> &blocks) {
    std::unordered_set<const Block *> doomed;
    const Timestamp deletedAt = now();
    for (const BlockPtr &block : blocks) {
        doomed.insert(block.get());
        block->setDeletedAt(deletedAt);
        block->setNeedsSync(true);
        block->setIsSelected(false);
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < m_blocks.size(); ++i) {
        if (!doomed.contains(m_blocks[i].get())) {
            m_blocks[kept] = m_blocks[i];
            m_frames[kept] = m_frames[i];
            ++kept;
        }
    }
    m_blocks.resize(kept);
    m_frames.resize(kept);
    std::erase_if(m_selectedBlocks, [&doomed](const BlockPtr &block) { return doomed.contains(block.get()); });
    for (const BlockPtr &block : blocks) {
        m_visibleBlocks.remove(*block);
    }
    m_storage.save();
    Q_EMIT blocksChanged();
}

void CanvasViewModel::moveSelectedBlocks(double dx, double dy) {
    for (const BlockPtr &block : m_selectedBlocks) {
        block->setXPosition(block->xPosition() + dx);
        block->setYPosition(block->yPosition() + dy);
        markEdited(*block);
    }
    if (!m_selectedBlocks.empty()) {
        std::ranges::transform(m_blocks, m_frames.begin(), [](const BlockPtr &block) { return frameOf(*block); });
        m_storage.save();
    }
}

void CanvasViewModel::bringToFront(const BlockPtr &block) {
    const auto index = indexOf(*block);
    if (!index || (block->zIndex() == m_maxZIndex && m_maxZIndex > 0)) {
        return;
    }
    block->setZIndex(takeTopZIndex());
    markEdited(*block);
    const auto place = std::ptrdiff_t(*index);
    std::rotate(m_blocks.begin() + place, m_blocks.begin() + place + 1, m_blocks.end());
    std::rotate(m_frames.begin() + place, m_frames.begin() + place + 1, m_frames.end());
    m_visibleBlocks.moveToEnd(*block);
    m_storage.save();
}

void CanvasViewModel::beginEditing(const BlockPtr &block) {
    if (m_focusedBlock == block) {
        return;
    }
    endEditing();
    selectOnly(block);
    if (block->rawTextOrEmpty().size() > kLongestEditedText) {
        return;
    }
    bringToFront(block);
    setFocusedBlock(block);
    m_visibleBlocks.assign(blocksInViewport());
}

void CanvasViewModel::endEditing() {
    const BlockPtr block = m_focusedBlock;
    setFocusedBlock(nullptr);
    if (block && block->blockType() == BlockType::text && block->rawTextOrEmpty().trimmed().isEmpty()) {
        softDelete({block});
    }
}

void CanvasViewModel::setText(Block &block, const QString &text) {
    if (block.rawTextOrEmpty() == text) {
        return;
    }
    block.setRawText(text);
    markEdited(block);
    m_saver.requestSave();
}

void CanvasViewModel::settleFrame(Block &block, const QRectF &frame) {
    block.setXPosition(frame.x());
    block.setYPosition(frame.y());
    block.setWidth(frame.width());
    block.setHeight(frame.height());
    if (const auto index = indexOf(block)) {
        m_frames[*index] = frame;
    }
}

void CanvasViewModel::selectOnly(const BlockPtr &block) {
    for (const BlockPtr &selected : std::exchange(m_selectedBlocks, {block})) {
        selected->setIsSelected(selected == block);
    }
    block->setIsSelected(true);
}

void CanvasViewModel::toggleSelection(const BlockPtr &block) {
    block->setIsSelected(!block->isSelected());
    if (block->isSelected()) {
        m_selectedBlocks.push_back(block);
    } else {
        std::erase(m_selectedBlocks, block);
    }
}

void CanvasViewModel::selectAll() {
    m_selectedBlocks = m_blocks;
    for (const BlockPtr &block : m_selectedBlocks) {
        block->setIsSelected(true);
    }
}

void CanvasViewModel::deselectAll() {
    for (const BlockPtr &block : std::exchange(m_selectedBlocks, {})) {
        block->setIsSelected(false);
    }
}

void CanvasViewModel::refreshBlocks() {
    struct Entry {
        std::int64_t zIndex;
        BlockPtr block;
    };
    std::vector<Entry> entries;
    for (BlockPtr &block : m_storage.fetch(&Block::isLive)) {
        const std::int64_t zIndex = block->zIndex();
        entries.push_back({zIndex, std::move(block)});
    }
    std::ranges::stable_sort(entries, {}, &Entry::zIndex);
    m_blocks.clear();
    m_frames.clear();
    m_selectedBlocks.clear();
    for (Entry &entry : entries) {
        m_frames.push_back(frameOf(*entry.block));
        if (entry.block->isSelected()) {
            m_selectedBlocks.push_back(entry.block);
        }
        m_blocks.push_back(std::move(entry.block));
    }
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

std::vector<BlockPtr> CanvasViewModel::blocksInViewport() const {
    if (!m_culledRect) {
        return m_blocks;
    }
    std::vector<BlockPtr> inView;
    for (std::size_t i = 0; i < m_blocks.size(); ++i) {
        if (intersects(culledFrameOf(m_frames[i]), *m_culledRect) || m_blocks[i] == m_focusedBlock) {
            inView.push_back(m_blocks[i]);
        }
    }
    return inView;
}

std::optional<std::size_t> CanvasViewModel::indexOf(const Block &block) const {
    const auto found = std::ranges::find(m_blocks, &block, [](const BlockPtr &entry) { return entry.get(); });
    return found == m_blocks.end() ? std::nullopt : std::optional(std::size_t(found - m_blocks.begin()));
}

std::int64_t CanvasViewModel::takeTopZIndex() {
    // A record from elsewhere may hold the largest number there is; then blocks share it, in order of their making.
    if (m_maxZIndex < std::numeric_limits<std::int64_t>::max()) {
        ++m_maxZIndex;
    }
    return m_maxZIndex;
}

Timestamp CanvasViewModel::now() const {
    return Timestamp::from(m_scheduler.now());
}

void CanvasViewModel::markEdited(Block &block) const {
    block.setUpdatedAt(now());
    block.setNeedsSync(true);
}

void CanvasViewModel::setFocusedBlock(const BlockPtr &block) {
    const BlockPtr previous = std::exchange(m_focusedBlock, block);
    if (previous == block) {
        return;
    }
    Q_EMIT focusedBlockIdChanged();
    if (!previous || !block) {
        Q_EMIT isAnyBlockEditingChanged();
    }
}

} // namespace tallowby
