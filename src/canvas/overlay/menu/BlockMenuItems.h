#pragma once

#include "canvas/model/BlockKindRegistry.h"
#include "canvas/model/CanvasViewModel.h"
#include "canvas/overlay/menu/MenuEntriesModel.h"

namespace tallowby {

/// What can be done with a block, and with all others that are selected with it.
class BlockMenuItems {
public:
    /// A block that is not selected becomes the only selected one. `ownEntries` are those of the block's kind.
    BlockMenuItems(CanvasViewModel &model, const BlockKindRegistry &kinds, const BlockPtr &block,
                   std::vector<MenuEntry> ownEntries = {});

    [[nodiscard]] std::vector<MenuEntry> entries() const;

private:
    CanvasViewModel &m_model;
    const BlockKindRegistry &m_kinds;
    BlockPtr m_block;
    std::vector<MenuEntry> m_ownEntries;
};

} // namespace tallowby
