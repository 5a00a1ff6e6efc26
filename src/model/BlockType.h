#pragma once

#include <QObject>
#include <QString>

#include <optional>

namespace tallowby {

/// The thirteen kinds of blocks. The order is used nowhere outside the process.
class BlockTypes {
    Q_GADGET

public:
    enum class BlockType {
        text,
        table,
        automation,
        checklist,
        image,
        code,
        divider,
        stickyNote,
        shape,
        voiceNote,
        videoNote,
        sketch,
        icon,
    };
    Q_ENUM(BlockType)
};
using BlockType = BlockTypes::BlockType;
inline constexpr int kBlockTypeCount = 13;

/// The wire name of a kind, as it stands in records.
[[nodiscard]] QLatin1StringView rawValue(BlockType type);
/// Exact and case-sensitive; none for anything that is no wire name.
[[nodiscard]] std::optional<BlockType> blockTypeFromRawValue(QStringView raw);

enum class ShapeType { rectangle, circle, arrow, line, diamond, triangle, speechBubble };

[[nodiscard]] QLatin1StringView rawValue(ShapeType type);
[[nodiscard]] std::optional<ShapeType> shapeTypeFromRawValue(QStringView raw);

} // namespace tallowby
