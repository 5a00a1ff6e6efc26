#pragma once

#include "model/Block.h"

#include <array>
#include <string_view>

namespace tallowby {

namespace json {
class TextParser;
}

/// The flat record of one block, the same in the file and in what is exchanged with the backend. Sticky colour, code
/// language, selection and the dirty flag are not carried: they belong to this run of the program.
struct BlockDTO {
    QUuid id;
    QUuid userId;
    double xPosition = 0;
    double yPosition = 0;
    double width = 0;
    double height = 0;
    std::int64_t zIndex = 0;
    /// The wire name of a kind, or one that this version does not know.
    QString blockType;
    /// One JSON object as compact text: nobody needs the tree on the way between file, block and backend.
    std::optional<QByteArray> content;
    std::optional<QString> rawText;
    std::optional<std::vector<float>> embedding;
    std::optional<QStringList> tags;
    std::optional<bool> isTodo;
    std::optional<bool> isEvent;
    std::optional<Timestamp> dueDate;
    Timestamp createdAt;
    Timestamp updatedAt;
    std::optional<Timestamp> syncedAt;
    std::optional<Timestamp> deletedAt;
    std::optional<double> fontSize;
    std::optional<QString> textColor;
    std::optional<double> rotation;
    std::optional<bool> isBold;
    std::optional<bool> isItalic;
    std::optional<bool> isStrikethrough;

    BlockDTO() = default;
    /// A payload that is no JSON object gives a record without content. Any thread, a parser each.
    BlockDTO(const BlockFields &fields, json::TextParser &parser);

    /// The fields of a new block. A kind that is not known becomes `text`; absent content becomes the payload "null".
    [[nodiscard]] SharedBlockFields toFields() &&;
    [[nodiscard]] BlockPtr toBlock() &&;
};

/// The keys of a record, in the order in which they are written.
enum class RecordKey : std::uint8_t {
    id,
    userId,
    xPosition,
    yPosition,
    width,
    height,
    zIndex,
    blockType,
    content,
    rawText,
    embedding,
    tags,
    isTodo,
    isEvent,
    dueDate,
    createdAt,
    updatedAt,
    syncedAt,
    deletedAt,
    fontSize,
    textColor,
    rotation,
    isBold,
    isItalic,
    isStrikethrough,
};
inline constexpr std::array<std::string_view, 25> kRecordKeys{
    "id",         "user_id",    "x_position", "y_position",       "width",      "height",    "z_index",
    "block_type", "content",    "raw_text",   "embedding",        "tags",       "is_todo",   "is_event",
    "due_date",   "created_at", "updated_at", "synced_at",        "deleted_at", "font_size", "text_color",
    "rotation",   "is_bold",    "is_italic",  "is_strikethrough",
};

} // namespace tallowby
