#include "storage/BlockMerge.h"

#include <algorithm>

namespace tallowby {

namespace {

Timestamp lastChange(const BlockFields &fields) {
    return std::max(fields.updatedAt, fields.deletedAt.value_or(fields.updatedAt));
}

} // namespace

bool isLater(const BlockFields &record, const BlockFields &block) {
    return lastChange(record) > lastChange(block);
}

void takeOver(Block &block, const BlockFields &record) {
    block.setXPosition(record.xPosition);
    block.setYPosition(record.yPosition);
    block.setWidth(record.width);
    block.setHeight(record.height);
    block.setZIndex(record.zIndex);
    block.setBlockType(record.blockType);
    block.setContent(record.content);
    block.setRawText(record.rawText);
    block.setFontSize(record.fontSize);
    block.setTextColor(record.textColor);
    block.setRotation(record.rotation);
    block.setIsBold(record.isBold);
    block.setIsItalic(record.isItalic);
    block.setIsStrikethrough(record.isStrikethrough);
    block.setEmbedding(record.embedding);
    block.setTags(record.tags);
    block.setIsTodo(record.isTodo);
    block.setIsEvent(record.isEvent);
    block.setDueDate(record.dueDate);
    block.setUpdatedAt(record.updatedAt);
    block.setSyncedAt(record.syncedAt);
    block.setDeletedAt(record.deletedAt);
}

bool isUnsent(const BlockFields &record) {
    return !record.syncedAt || lastChange(record) > *record.syncedAt;
}

} // namespace tallowby
