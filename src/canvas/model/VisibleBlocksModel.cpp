#include "canvas/model/VisibleBlocksModel.h"

#include <algorithm>
#include <unordered_set>

namespace tallowby {

namespace {

using BlockSet = std::unordered_set<const Block *>;

BlockSet setOf(const std::vector<BlockPtr> &blocks) {
    BlockSet set;
    set.reserve(blocks.size());
    for (const BlockPtr &block : blocks) {
        set.insert(block.get());
    }
    return set;
}

} // namespace

int VisibleBlocksModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(m_blocks.size());
}

QVariant VisibleBlocksModel::data(const QModelIndex &index, int role) const {
    if (role != BlockRole || !index.isValid()) {
        return {};
    }
    Block *block = m_blocks[std::size_t(index.row())].get();
    QQmlEngine::setObjectOwnership(block, QQmlEngine::CppOwnership);
    return QVariant::fromValue(block);
}

QHash<int, QByteArray> VisibleBlocksModel::roleNames() const {
    return {{BlockRole, QByteArrayLiteral("block")}};
}

template <typename Predicate>
bool VisibleBlocksModel::removeRows(Predicate isGone) {
    const std::size_t before = m_blocks.size();
    for (int end = int(m_blocks.size()); end > 0;) {
        const auto isGoneAt = [this, &isGone](int row) { return isGone(m_blocks[std::size_t(row)].get()); };
        if (!isGoneAt(end - 1)) {
            --end;
            continue;
        }
        int start = end - 1;
        while (start > 0 && isGoneAt(start - 1)) {
            --start;
        }
        beginRemoveRows({}, start, end - 1);
        m_blocks.erase(m_blocks.begin() + start, m_blocks.begin() + end);
        endRemoveRows();
        end = start;
    }
    return m_blocks.size() != before;
}

void VisibleBlocksModel::append(const BlockPtr &block) {
    const int row = int(m_blocks.size());
    beginInsertRows({}, row, row);
    m_blocks.push_back(block);
    endInsertRows();
    Q_EMIT changed();
}

void VisibleBlocksModel::removeAll(const BlockSet &blocks) {
    if (removeRows([&blocks](const Block *block) { return blocks.contains(block); })) {
        Q_EMIT changed();
    }
}

void VisibleBlocksModel::moveToEnd(const Block &block) {
    const int row = rowOf(block);
    const int last = int(m_blocks.size()) - 1;
    if (row >= 0 && row != last) {
        moveRow(row, last);
        Q_EMIT changed();
    }
}

void VisibleBlocksModel::moveToStart(const Block &block) {
    if (const int row = rowOf(block); row > 0) {
        moveRow(row, 0);
        Q_EMIT changed();
    }
}

void VisibleBlocksModel::assign(const std::vector<BlockPtr> &blocks) {
    if (m_blocks == blocks) {
        return;
    }
    removeRows([wanted = setOf(blocks)](const Block *block) { return !wanted.contains(block); });
    const BlockSet kept = setOf(m_blocks);
    for (std::size_t row = 0; row < blocks.size();) {
        if (row < m_blocks.size() && m_blocks[row] == blocks[row]) {
            ++row;
        } else if (kept.contains(blocks[row].get())) {
            moveRow(rowOf(*blocks[row]), int(row));
        } else {
            const auto isNew = [&kept](const BlockPtr &block) { return !kept.contains(block.get()); };
            const auto start = blocks.begin() + std::ptrdiff_t(row);
            const auto end = std::find_if_not(start, blocks.end(), isNew);
            beginInsertRows({}, int(row), int(end - blocks.begin()) - 1);
            m_blocks.insert(m_blocks.begin() + std::ptrdiff_t(row), start, end);
            endInsertRows();
            row = std::size_t(end - blocks.begin());
        }
    }
    Q_EMIT changed();
}

int VisibleBlocksModel::rowOf(const Block &block) const {
    const auto found = std::ranges::find(m_blocks, &block, [](const BlockPtr &entry) { return entry.get(); });
    return found == m_blocks.end() ? -1 : int(found - m_blocks.begin());
}

void VisibleBlocksModel::moveRow(int from, int to) {
    // The model's interface counts the target before the row is taken out.
    beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
    const BlockPtr block = m_blocks[std::size_t(from)];
    m_blocks.erase(m_blocks.begin() + from);
    m_blocks.insert(m_blocks.begin() + to, block);
    endMoveRows();
}

} // namespace tallowby
