#pragma once

#include "canvas/model/BlockKindRegistry.h"
#include "canvas/model/CanvasViewModel.h"

#include <QQuickItem>

#include <optional>
#include <vector>

namespace tallowby {

/// What can be set about the selected blocks: the base of all toolbars. It shows what the blocks share, and what it
/// sets, it sets for all of them. `FormatToolbarView` gives it the blocks before its bindings are evaluated.
class BlockToolbar : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    using QQuickItem::QQuickItem;

    void attach(CanvasViewModel &viewModel, const BlockKindRegistry &kinds);
    void setBlocks(std::vector<BlockPtr> blocks);

Q_SIGNALS:
    /// The blocks are others, or look otherwise; at most once a frame.
    void changed();

protected:
    void updatePolish() override;

    [[nodiscard]] CanvasViewModel &viewModel() const { return *m_viewModel; }
    [[nodiscard]] const BlockKind &kindOf(const Block &block) const { return m_kinds->kind(block.blockType()); }
    [[nodiscard]] const std::vector<BlockPtr> &blocks() const { return m_blocks; }
    /// What `read` says about all blocks; none when they differ.
    template <typename Read>
    [[nodiscard]] auto shared(Read read) const -> std::optional<decltype(read(std::declval<const Block &>()))> {
        if (m_blocks.empty()) {
            return std::nullopt;
        }
        auto first = read(*m_blocks.front());
        for (std::size_t i = 1; i < m_blocks.size(); ++i) {
            if (read(*m_blocks[i]) != first) {
                return std::nullopt;
            }
        }
        return first;
    }

private:
    CanvasViewModel *m_viewModel = nullptr;
    const BlockKindRegistry *m_kinds = nullptr;
    std::vector<BlockPtr> m_blocks;
};

} // namespace tallowby
