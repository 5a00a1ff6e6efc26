#include "model/BlockDTO.h"

#include "model/json/JsonReading.h"

namespace tallowby {

namespace {

/// The wire names as texts that all records share.
const QString &sharedRawValue(BlockType type) {
    static const auto names = [] {
        std::array<QString, kBlockTypeCount> texts;
        for (std::size_t place = 0; place < texts.size(); ++place) {
            texts[place] = rawValue(static_cast<BlockType>(place));
        }
        return texts;
    }();
    return names.at(static_cast<std::size_t>(type));
}

} // namespace

BlockDTO::BlockDTO(const BlockFields &fields, json::TextParser &parser)
    : id(fields.id)
    , userId(fields.userId)
    , xPosition(fields.xPosition)
    , yPosition(fields.yPosition)
    , width(fields.width)
    , height(fields.height)
    , zIndex(fields.zIndex)
    , blockType(sharedRawValue(fields.blockType))
    , content(parser.compactObject(fields.content))
    , rawText(fields.rawText)
    , embedding(fields.embedding)
    , tags(fields.tags)
    , isTodo(fields.isTodo)
    , isEvent(fields.isEvent)
    , dueDate(fields.dueDate)
    , createdAt(fields.createdAt)
    , updatedAt(fields.updatedAt)
    , syncedAt(fields.syncedAt)
    , deletedAt(fields.deletedAt)
    , fontSize(fields.fontSize)
    , textColor(fields.textColor)
    , rotation(fields.rotation)
    , isBold(fields.isBold)
    , isItalic(fields.isItalic)
    , isStrikethrough(fields.isStrikethrough) {}

SharedBlockFields BlockDTO::toFields() && {
    static const QByteArray noContent = QByteArrayLiteral("null");
    SharedBlockFields shared(new BlockFields);
    BlockFields &fields = *shared;
    fields.id = id;
    fields.userId = userId;
    fields.xPosition = xPosition;
    fields.yPosition = yPosition;
    fields.width = width;
    fields.height = height;
    fields.zIndex = zIndex;
    fields.blockType = blockTypeFromRawValue(blockType).value_or(BlockType::text);
    fields.content = content ? *std::move(content) : noContent;
    fields.rawText = std::move(rawText);
    fields.embedding = std::move(embedding);
    if (tags) {
        fields.tags = *std::move(tags);
    }
    fields.isTodo = isTodo.value_or(false);
    fields.isEvent = isEvent.value_or(false);
    fields.dueDate = dueDate;
    fields.createdAt = createdAt;
    fields.updatedAt = updatedAt;
    fields.syncedAt = syncedAt;
    fields.deletedAt = deletedAt;
    fields.fontSize = fontSize.value_or(fields.fontSize);
    if (textColor) {
        fields.textColor = *std::move(textColor);
    }
    fields.rotation = rotation.value_or(0);
    fields.isBold = isBold.value_or(false);
    fields.isItalic = isItalic.value_or(false);
    fields.isStrikethrough = isStrikethrough.value_or(false);
    return shared;
}

BlockPtr BlockDTO::toBlock() && {
    return std::make_shared<Block>(std::move(*this).toFields());
}

} // namespace tallowby
