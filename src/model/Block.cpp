#include "model/Block.h"

#include "model/AnyCodable.h"

#include <QRectF>

#include <cmath>
#include <concepts>

namespace tallowby {

namespace {

/// No record can carry anything else.
double finite(double number) {
    return std::isfinite(number) ? number : 0;
}

SharedBlockFields freshFields(QUuid userId, BlockType type, const QRectF &frame) {
    SharedBlockFields fields(new BlockFields);
    fields->id = QUuid::createUuid();
    fields->userId = userId;
    fields->xPosition = finite(frame.x());
    fields->yPosition = finite(frame.y());
    fields->width = finite(frame.width());
    fields->height = finite(frame.height());
    fields->blockType = type;
    fields->createdAt = Timestamp::from(std::chrono::system_clock::now());
    fields->updatedAt = fields->createdAt;
    return fields;
}

BlockPtr make(QUuid userId, BlockType type, QPointF at, QSizeF size) {
    return std::make_shared<Block>(userId, type, QRectF(at, size));
}

constexpr QSizeF kWideSize{300, 200};
constexpr QSizeF kCodeSize{400, 200};
constexpr QSizeF kDividerSize{300, 20};
constexpr QSizeF kStickySize{200, 200};
constexpr QSizeF kVoiceNoteSize{240, 110};
constexpr QSizeF kVideoNoteSize{300, 220};
constexpr QSizeF kSketchSize{40, 40};
constexpr QSizeF kIconSize{64, 64};
constexpr QLatin1StringView kIconColor("#333333");

} // namespace

Block::Block(SharedBlockFields fields)
    : m_fields(std::move(fields)) {}

Block::Block(QUuid userId, BlockType type, QRectF frame)
    : m_fields(freshFields(userId, type, frame)) {}

BlockPtr Block::text(QUuid userId, QPointF at, const QString &text) {
    auto block = make(userId, BlockType::text, at, kWideSize);
    block->setRawText(text);
    return block;
}

BlockPtr Block::table(QUuid userId, QPointF at) {
    auto block = make(userId, BlockType::table, at, kWideSize);
    block->setContent(QByteArrayLiteral(R"({"rows":3,"columns":3,"cells":[["","",""],["","",""],["","",""]]})"));
    return block;
}

BlockPtr Block::automation(QUuid userId, QPointF at, const QString &response) {
    auto block = make(userId, BlockType::automation, at, kWideSize);
    block->setRawText(response);
    return block;
}

BlockPtr Block::code(QUuid userId, QPointF at, const QString &code, const QString &language) {
    auto block = make(userId, BlockType::code, at, kCodeSize);
    block->setRawText(code);
    block->setCodeLanguage(language);
    return block;
}

BlockPtr Block::divider(QUuid userId, QPointF at) {
    return make(userId, BlockType::divider, at, kDividerSize);
}

BlockPtr Block::stickyNote(QUuid userId, QPointF at, const QString &color) {
    auto block = make(userId, BlockType::stickyNote, at, kStickySize);
    block->setStickyColor(color);
    return block;
}

BlockPtr Block::voiceNote(QUuid userId, QPointF at) {
    return make(userId, BlockType::voiceNote, at, kVoiceNoteSize);
}

BlockPtr Block::videoNote(QUuid userId, QPointF at) {
    return make(userId, BlockType::videoNote, at, kVideoNoteSize);
}

BlockPtr Block::sketch(QUuid userId, QPointF at) {
    return make(userId, BlockType::sketch, at, kSketchSize);
}

BlockPtr Block::icon(QUuid userId, QPointF at, const QString &iconName) {
    auto block = make(userId, BlockType::icon, at, kIconSize);
    block->setContentField(QStringLiteral("iconName"), iconName);
    block->setTextColor(kIconColor);
    return block;
}

template <typename Value>
void Block::write(Value BlockFields::*field, const Value &value, void (Block::*changed)()) {
    if (m_fields.constData()->*field == value) {
        return;
    }
    if constexpr (std::floating_point<Value>) {
        if (!std::isfinite(value)) {
            return;
        }
    }
    m_fields.data()->*field = value;
    if (m_listener) {
        m_listener->blockRecordChanged(*this);
    }
    Q_EMIT(this->*changed)();
}

void Block::setUserId(QUuid userId) {
    write(&BlockFields::userId, userId, &Block::userIdChanged);
}

void Block::setXPosition(double x) {
    write(&BlockFields::xPosition, x, &Block::xPositionChanged);
}

void Block::setYPosition(double y) {
    write(&BlockFields::yPosition, y, &Block::yPositionChanged);
}

void Block::setWidth(double width) {
    write(&BlockFields::width, width, &Block::widthChanged);
}

void Block::setHeight(double height) {
    write(&BlockFields::height, height, &Block::heightChanged);
}

void Block::setZIndex(qint64 zIndex) {
    write(&BlockFields::zIndex, std::int64_t(zIndex), &Block::zIndexChanged);
}

void Block::setBlockType(BlockType type) {
    write(&BlockFields::blockType, type, &Block::blockTypeChanged);
}

void Block::setContent(const QByteArray &content) {
    write(&BlockFields::content, content, &Block::contentChanged);
}

void Block::setRawText(const std::optional<QString> &text) {
    write(&BlockFields::rawText, text, &Block::rawTextChanged);
}

void Block::setFontSize(double points) {
    write(&BlockFields::fontSize, points, &Block::fontSizeChanged);
}

void Block::setTextColor(const QString &color) {
    write(&BlockFields::textColor, color, &Block::textColorChanged);
}

void Block::setIsBold(bool isBold) {
    write(&BlockFields::isBold, isBold, &Block::isBoldChanged);
}

void Block::setIsItalic(bool isItalic) {
    write(&BlockFields::isItalic, isItalic, &Block::isItalicChanged);
}

void Block::setIsStrikethrough(bool isStrikethrough) {
    write(&BlockFields::isStrikethrough, isStrikethrough, &Block::isStrikethroughChanged);
}

void Block::setStickyColor(const QString &color) {
    write(&BlockFields::stickyColor, color, &Block::stickyColorChanged);
}

void Block::setCodeLanguage(const QString &language) {
    write(&BlockFields::codeLanguage, language, &Block::codeLanguageChanged);
}

void Block::setRotation(double degrees) {
    write(&BlockFields::rotation, degrees, &Block::rotationChanged);
}

void Block::setEmbedding(const std::optional<std::vector<float>> &embedding) {
    write(&BlockFields::embedding, embedding, &Block::embeddingChanged);
}

void Block::setTags(const QStringList &tags) {
    write(&BlockFields::tags, tags, &Block::tagsChanged);
}

void Block::setIsTodo(bool isTodo) {
    write(&BlockFields::isTodo, isTodo, &Block::isTodoChanged);
}

void Block::setIsEvent(bool isEvent) {
    write(&BlockFields::isEvent, isEvent, &Block::isEventChanged);
}

void Block::setDueDate(std::optional<Timestamp> dueDate) {
    write(&BlockFields::dueDate, dueDate, &Block::dueDateChanged);
}

void Block::setUpdatedAt(Timestamp updatedAt) {
    write(&BlockFields::updatedAt, updatedAt, &Block::updatedAtChanged);
}

void Block::setSyncedAt(std::optional<Timestamp> syncedAt) {
    write(&BlockFields::syncedAt, syncedAt, &Block::syncedAtChanged);
}

void Block::setDeletedAt(std::optional<Timestamp> deletedAt) {
    write(&BlockFields::deletedAt, deletedAt, &Block::deletedAtChanged);
}

void Block::setIsSelected(bool isSelected) {
    if (m_isSelected != isSelected) {
        m_isSelected = isSelected;
        Q_EMIT isSelectedChanged();
    }
}

void Block::setNeedsSync(bool needsSync) {
    if (m_needsSync != needsSync) {
        m_needsSync = needsSync;
        Q_EMIT needsSyncChanged();
    }
}

void Block::setChangeListener(BlockChangeListener *listener, std::size_t place) {
    m_listener = listener;
    m_place = place;
}

} // namespace tallowby
