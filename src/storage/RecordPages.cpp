#include "storage/RecordPages.h"

#include <algorithm>
#include <iterator>

namespace tallowby {

RecordPages::RecordPages(std::vector<SharedBlockFields> records) {
    m_pages.reserve((records.size() + kPageSize - 1) / kPageSize);
    for (auto next = records.begin(); next != records.end();) {
        const auto end = next + std::min<std::ptrdiff_t>(kPageSize, records.end() - next);
        m_pages.push_back(std::make_shared<const Page>(std::move_iterator(next), std::move_iterator(end)));
        next = end;
    }
    m_isChanged.resize(m_pages.size());
}

void RecordPages::markChanged(std::size_t place) {
    const std::size_t page = place / kPageSize;
    if (page >= m_pages.size()) {
        m_pages.resize(page + 1);
        m_isChanged.resize(page + 1);
    }
    if (!m_isChanged[page]) {
        m_isChanged[page] = true;
        m_changed.push_back(page);
    }
}

const RecordPages::Snapshot &RecordPages::snapshot(const std::vector<BlockPtr> &blocks) {
    for (const std::size_t page : m_changed) {
        const std::size_t first = page * kPageSize;
        const std::size_t end = std::min(first + kPageSize, blocks.size());
        Page records;
        records.reserve(end - first);
        for (std::size_t place = first; place < end; ++place) {
            records.push_back(blocks[place]->fields());
        }
        m_pages[page] = std::make_shared<const Page>(std::move(records));
        m_isChanged[page] = false;
    }
    m_changed.clear();
    return m_pages;
}

} // namespace tallowby
