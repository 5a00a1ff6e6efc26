#include "canvas/model/BlockGeometry.h"
#include "canvas/model/CanvasViewModel.h"
#include "model/AnyCodable.h"
#include "storage/BlockStorage.h"

namespace tallowby {

namespace {

/// From the top left corner of what is spawned to the point that it is spawned at.
constexpr QPointF kIconCorner{32, 32};
constexpr QPointF kSketchCorner{200, 150};

constexpr QSizeF kCardSize{300, 200};
constexpr QSizeF kSpawnedSketchSize{400, 300};

/// Makes a block of a kind that has no factory.
BlockPtr make(QUuid userId, BlockType type, QPointF corner, QSizeF size) {
    return std::make_shared<Block>(userId, type, QRectF(corner, size));
}

BlockPtr centered(const BlockPtr &block, QPointF at) {
    block->setXPosition(at.x() - block->width() / 2);
    block->setYPosition(at.y() - block->height() / 2);
    return block;
}

BlockPtr makeChecklist(QUuid userId, QPointF at) {
    auto block = make(userId, BlockType::checklist, at, kCardSize);
    block->setContentField(QStringLiteral("title"), QString());
    block->setChecklistItems({std::make_shared<ChecklistItem>(QUuid::createUuid())});
    return block;
}

BlockPtr makeImage(QUuid userId, QPointF at) {
    auto block = make(userId, BlockType::image, at, kCardSize);
    // No bytes: the body shows that a picture is still to come.
    block->setContent(QByteArrayLiteral(R"({"image":""})"));
    return block;
}

BlockPtr makeShape(QUuid userId, QPointF at) {
    return centered(make(userId, BlockType::shape, at, CanvasViewModel::kDrawnShapeSize), at);
}

} // namespace

void CanvasViewModel::place(const BlockPtr &block) {
    block->setZIndex(takeTopZIndex());
    m_storage.insert(block);
    m_live.append(block);
    m_visibleBlocks.append(block);
    Q_EMIT blocksChanged();
}

void CanvasViewModel::spawn(const BlockPtr &block) {
    m_spawningBlock = block.get();
    place(block);
    m_spawningBlock = nullptr;
    selectOnly(block);
    registerAction(AddAction{block});
}

BlockPtr CanvasViewModel::spawnBlock(QPointF at, BlockType type, const QString &initialText) {
    endEditing();
    const BlockPtr block = makeSpawned(at, type, initialText);
    spawn(block);
    open(block, true);
    return block;
}

BlockPtr CanvasViewModel::makeSpawned(QPointF at, BlockType type, const QString &initialText) const {
    const QUuid userId = ownerOfNewBlocks();
    switch (type) {
    case BlockType::text: {
        auto block = Block::text(userId, at - kSpawnedTextCorner, initialText);
        block->setWidth(kSpawnedTextSize.width());
        block->setHeight(kSpawnedTextSize.height());
        return block;
    }
    case BlockType::table:
        return Block::table(userId, at);
    case BlockType::automation:
        return Block::automation(userId, at, QStringLiteral("Select a zone to trigger AI insights."));
    case BlockType::checklist:
        return makeChecklist(userId, at);
    case BlockType::image:
        return makeImage(userId, at);
    case BlockType::code:
        return Block::code(userId, at, {}, QStringLiteral("swift"));
    case BlockType::divider:
        return Block::divider(userId, at);
    case BlockType::stickyNote:
        return Block::stickyNote(userId, at, QStringLiteral("yellow"));
    case BlockType::shape:
        return makeShape(userId, at);
    case BlockType::voiceNote:
        return centered(Block::voiceNote(userId, at), at);
    case BlockType::videoNote:
        return centered(Block::videoNote(userId, at), at);
    case BlockType::sketch:
        return make(userId, BlockType::sketch, at - kSketchCorner, kSpawnedSketchSize);
    case BlockType::icon:
        return Block::icon(userId, at - kIconCorner, QStringLiteral("star"));
    }
    Q_UNREACHABLE();
}

BlockPtr CanvasViewModel::spawnShape(QPointF at, ShapeType shapeType) {
    const QSizeF size = shapeType == ShapeType::line ? kSpawnedLineSize : kDrawnShapeSize;
    const BlockPtr block = centered(make(ownerOfNewBlocks(), BlockType::shape, at, size), at);
    block->setShapeType(shapeType);
    spawn(block);
    return block;
}

BlockPtr CanvasViewModel::spawnIcon(QPointF at, const QString &iconName) {
    const BlockPtr block = Block::icon(ownerOfNewBlocks(), at - kIconCorner, iconName);
    spawn(block);
    return block;
}

void CanvasViewModel::duplicateBlock(BlockPtr block) {
    endEditing();
    if (!block->isLive()) {
        return;
    }
    const BlockPtr copy = placeCopyOf(*block);
    selectOnly(copy);
    if (copy->blockType() == BlockType::text) {
        open(copy, false);
    }
}

void CanvasViewModel::duplicateSelected() {
    endEditing();
    const std::vector<BlockPtr> selected = selectedInPaintOrder();
    if (selected.size() == 1) {
        duplicateBlock(selected.front());
        return;
    }
    std::vector<BlockPtr> copies;
    copies.reserve(selected.size());
    for (const BlockPtr &block : selected) {
        copies.push_back(placeCopyOf(*block));
    }
    setSelection(std::move(copies));
}

BlockPtr CanvasViewModel::placeCopyOf(const Block &block) {
    const QPointF offset(kDuplicateOffset, kDuplicateOffset);
    auto copy = std::make_shared<Block>(block.userId(), block.blockType(), frameOf(block).translated(offset));
    copy->setContent(block.content());
    copy->setRawText(block.rawText());
    copy->setFontSize(block.fontSize());
    copy->setTextColor(block.textColor());
    copy->setIsBold(block.isBold());
    copy->setIsItalic(block.isItalic());
    copy->setIsStrikethrough(block.isStrikethrough());
    copy->setStickyColor(block.stickyColor());
    copy->setCodeLanguage(block.codeLanguage());
    shiftPoints(*copy, offset);
    place(copy);
    return copy;
}

} // namespace tallowby
