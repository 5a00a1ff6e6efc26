#include "canvas/model/ReadingOrder.h"

#include "canvas/model/BlockGeometry.h"

#include <algorithm>

namespace tallowby {

std::vector<BlockPtr> inReadingOrder(std::vector<BlockPtr> blocks) {
    struct Entry {
        QRectF frame;
        BlockPtr block;
    };
    std::vector<Entry> entries;
    entries.reserve(blocks.size());
    for (BlockPtr &block : blocks) {
        const QRectF frame = frameOf(*block);
        entries.push_back({frame, std::move(block)});
    }
    const auto top = [](const Entry &entry) { return entry.frame.top(); };
    std::ranges::stable_sort(entries, {}, top);
    for (auto row = entries.begin(); row != entries.end();) {
        const double bottom = row->frame.bottom();
        const auto end = std::find_if(row + 1, entries.end(),
                                      [bottom](const Entry &next) { return next.frame.center().y() >= bottom; });
        std::stable_sort(row, end, [](const Entry &a, const Entry &b) { return a.frame.left() < b.frame.left(); });
        row = end;
    }
    std::ranges::transform(entries, blocks.begin(), [](Entry &entry) { return std::move(entry.block); });
    return blocks;
}

} // namespace tallowby
