#pragma once

#include "model/BlockType.h"

#include <QAccessible>
#include <QString>
#include <QUrl>

#include <vector>

namespace tallowby {

/// What the canvas has to know about a kind of block; nothing else on the canvas asks which kind a block is.
struct BlockKind {
    BlockType type;
    /// For people, in their language.
    QString name;
    QString symbol;
    /// A QML type made on `BlockBody`.
    QUrl body;
    /// Whether its body takes typing.
    bool isEditable;
    QAccessible::Role accessibleRole;
};

/// The one place that knows the kinds.
class BlockKindRegistry {
public:
    /// Needs exactly one entry for each kind, in any order.
    explicit BlockKindRegistry(std::vector<BlockKind> kinds);

    [[nodiscard]] const BlockKind &kind(BlockType type) const { return m_kinds[static_cast<std::size_t>(type)]; }

private:
    std::vector<BlockKind> m_kinds;
};

} // namespace tallowby
