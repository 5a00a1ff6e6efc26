#pragma once

#include "model/BlockType.h"
#include "platform/theme/Theme.h"

#include <QAccessible>
#include <QString>
#include <QUrl>

#include <vector>

namespace tallowby {

class Block;
class CanvasViewModel;

/// The one colour that a person gives to blocks of a kind.
struct BlockColor {
    /// The ordinary one, "#" and six hexadecimal digits; it is shown as the ink of the theme.
    QString ink;
    QString (*get)(const Block &);
    void (*set)(CanvasViewModel &, Block &, const QString &);
};

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
    /// Whether a click that selects it opens it for typing at once; others take a second one.
    bool opensAtFirstClick = false;
    /// What marks it on the mini map, in the theme's colours.
    QColor (Theme::*miniMapColor)() const = &Theme::inkSoft;
    /// A QML type made on `BlockToolbar`, for selected blocks that all name the same one; none when there is nothing to
    /// set.
    QUrl toolbar = {};
    /// Null when blocks of the kind have none.
    const BlockColor *color = nullptr;
    /// Whether its text can be bold, italic and struck through.
    bool hasTextStyle = false;
};

/// The one place that knows the kinds.
class BlockKindRegistry {
public:
    /// Needs exactly one entry for each kind, in any order.
    explicit BlockKindRegistry(std::vector<BlockKind> kinds, QUrl colorToolbar = {});

    [[nodiscard]] const BlockKind &kind(BlockType type) const { return m_kinds[static_cast<std::size_t>(type)]; }

    /// For selected blocks that have nothing in common but a colour.
    [[nodiscard]] const QUrl &colorToolbar() const { return m_colorToolbar; }

private:
    std::vector<BlockKind> m_kinds;
    QUrl m_colorToolbar;
};

} // namespace tallowby
