#include "canvas/BlockKindRegistry.h"

#include <QtGlobal>

#include <algorithm>

namespace tallowby {

BlockKindRegistry::BlockKindRegistry(std::vector<BlockKind> kinds)
    : m_kinds(std::move(kinds)) {
    std::ranges::sort(m_kinds, {}, &BlockKind::type);
    Q_ASSERT(m_kinds.size() == kBlockTypeCount);
}

} // namespace tallowby
