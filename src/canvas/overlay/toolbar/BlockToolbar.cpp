#include "canvas/overlay/toolbar/BlockToolbar.h"

namespace tallowby {

void BlockToolbar::attach(CanvasViewModel &viewModel, const BlockKindRegistry &kinds) {
    m_viewModel = &viewModel;
    m_kinds = &kinds;
}

void BlockToolbar::setBlocks(std::vector<BlockPtr> blocks) {
    if (m_blocks == blocks) {
        return;
    }
    for (const BlockPtr &block : m_blocks) {
        block->disconnect(this);
    }
    m_blocks = std::move(blocks);
    for (const BlockPtr &block : m_blocks) {
        for (const auto change : {&Block::contentChanged, &Block::fontSizeChanged, &Block::textColorChanged,
                                  &Block::isBoldChanged, &Block::isItalicChanged, &Block::isStrikethroughChanged,
                                  &Block::stickyColorChanged, &Block::widthChanged, &Block::heightChanged}) {
            connect(block.get(), change, this, &QQuickItem::polish);
        }
    }
    polish();
}

void BlockToolbar::updatePolish() {
    Q_EMIT changed();
}

} // namespace tallowby
