#include "canvas/model/BlockKindRegistry.h"

#include <QtGlobal>

#include <algorithm>

namespace tallowby {

BlockKindRegistry::BlockKindRegistry(std::vector<BlockKind> kinds, QUrl colorToolbar)
    : m_kinds(std::move(kinds))
    , m_colorToolbar(std::move(colorToolbar)) {
    std::ranges::sort(m_kinds, {}, &BlockKind::type);
    Q_ASSERT(m_kinds.size() == kBlockTypeCount);
}

} // namespace tallowby
