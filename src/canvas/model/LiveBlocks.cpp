#include "canvas/model/LiveBlocks.h"

#include "canvas/model/BlockGeometry.h"

#include <algorithm>
#include <iterator>

namespace tallowby {

namespace {

/// From so many blocks on, going through all of them once is quicker than looking for each.
constexpr std::size_t kManyBlocks = 8;

std::int64_t zIndexOf(const BlockPtr &block) {
    return block->zIndex();
}

} // namespace

std::optional<std::size_t> LiveBlocks::indexOf(const Block &block) const {
    const auto found = std::ranges::find(m_blocks, &block, &BlockPtr::get);
    return found == m_blocks.end() ? std::nullopt : std::optional(std::size_t(found - m_blocks.begin()));
}

void LiveBlocks::assign(std::vector<BlockPtr> blocks) {
    struct Entry {
        std::int64_t zIndex;
        BlockPtr block;
    };
    // Sorting by a depth that each comparison would have to fetch from the blocks takes several times as long.
    std::vector<Entry> entries;
    entries.reserve(blocks.size());
    for (BlockPtr &block : blocks) {
        const std::int64_t zIndex = block->zIndex();
        entries.push_back({zIndex, std::move(block)});
    }
    std::ranges::stable_sort(entries, {}, &Entry::zIndex);
    m_blocks.clear();
    m_reaches.clear();
    for (const Entry &entry : entries) {
        append(entry.block);
    }
}

void LiveBlocks::append(const BlockPtr &block) {
    m_blocks.push_back(block);
    m_reaches.push_back(reachOf(*block));
}

void LiveBlocks::insertByDepth(const std::vector<BlockPtr> &blocks) {
    if (blocks.size() >= kManyBlocks) {
        std::unordered_set<const Block *> known;
        std::ranges::transform(m_blocks, std::inserter(known, known.end()), &BlockPtr::get);
        std::vector<BlockPtr> all = m_blocks;
        std::ranges::copy_if(blocks, std::back_inserter(all),
                             [&known](const BlockPtr &block) { return known.insert(block.get()).second; });
        assign(std::move(all));
        return;
    }
    for (const BlockPtr &block : blocks) {
        if (contains(*block)) {
            updateReach(*block);
            continue;
        }
        const auto place = std::ranges::upper_bound(m_blocks, block->zIndex(), {}, &zIndexOf);
        m_reaches.insert(m_reaches.begin() + (place - m_blocks.begin()), reachOf(*block));
        m_blocks.insert(place, block);
    }
}

void LiveBlocks::remove(const Block &block) {
    if (const auto index = indexOf(block)) {
        m_blocks.erase(m_blocks.begin() + std::ptrdiff_t(*index));
        m_reaches.erase(m_reaches.begin() + std::ptrdiff_t(*index));
    }
}

void LiveBlocks::removeAll(const std::unordered_set<const Block *> &blocks) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < m_blocks.size(); ++i) {
        if (!blocks.contains(m_blocks[i].get())) {
            m_blocks[kept] = std::move(m_blocks[i]);
            m_reaches[kept] = m_reaches[i];
            ++kept;
        }
    }
    m_blocks.resize(kept);
    m_reaches.resize(kept);
}

void LiveBlocks::moveToFront(const Block &block) {
    if (const auto index = indexOf(block)) {
        const auto place = std::ptrdiff_t(*index);
        std::rotate(m_blocks.begin() + place, m_blocks.begin() + place + 1, m_blocks.end());
        std::rotate(m_reaches.begin() + place, m_reaches.begin() + place + 1, m_reaches.end());
    }
}

void LiveBlocks::moveToBack(const Block &block) {
    if (const auto index = indexOf(block)) {
        const auto place = std::ptrdiff_t(*index);
        std::rotate(m_blocks.begin(), m_blocks.begin() + place, m_blocks.begin() + place + 1);
        std::rotate(m_reaches.begin(), m_reaches.begin() + place, m_reaches.begin() + place + 1);
    }
}

void LiveBlocks::updateReach(const Block &block) {
    if (const auto index = indexOf(block)) {
        m_reaches[*index] = reachOf(block);
    }
}

void LiveBlocks::updateReaches(const std::vector<BlockPtr> &blocks) {
    if (blocks.size() < kManyBlocks) {
        std::ranges::for_each(blocks, [this](const BlockPtr &block) { updateReach(*block); });
    } else {
        std::ranges::transform(m_blocks, m_reaches.begin(), [](const BlockPtr &block) { return reachOf(*block); });
    }
}

std::vector<BlockPtr> LiveBlocks::meeting(const QRectF &rect, QSizeF smallest, const Block *always,
                                          const Shift &shift) const {
    std::vector<BlockPtr> found;
    for (std::size_t i = 0; i < m_blocks.size(); ++i) {
        const bool isShifted = !shift.blocks.empty() && shift.blocks.contains(m_blocks[i].get());
        const QRectF reach = isShifted ? m_reaches[i].translated(shift.offset) : m_reaches[i];
        if (meet({reach.topLeft(), reach.size().expandedTo(smallest)}, rect) || m_blocks[i].get() == always) {
            found.push_back(m_blocks[i]);
        }
    }
    return found;
}

} // namespace tallowby
