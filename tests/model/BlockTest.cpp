#include "model/Block.h"

#include <gtest/gtest.h>

#include <limits>

namespace tallowby {

TEST(Block, FactoriesGiveEachKindItsSizeAndStart) {
    const QUuid userId = QUuid::createUuid();
    const QPointF at(12, -7);
    const struct {
        BlockPtr block;
        BlockType type;
        QSizeF size;
        std::optional<QString> rawText;
        QByteArray content;
    } cases[] = {
        {Block::text(userId, at, u"a"_qs), BlockType::text, {300, 200}, u"a"_qs, {}},
        {Block::table(userId, at),
         BlockType::table,
         {300, 200},
         {},
         R"({"rows":3,"columns":3,"cells":[["","",""],["","",""],["","",""]]})"},
        {Block::automation(userId, at, u"b"_qs), BlockType::automation, {300, 200}, u"b"_qs, {}},
        {Block::code(userId, at, u"c"_qs, u"rust"_qs), BlockType::code, {400, 200}, u"c"_qs, {}},
        {Block::divider(userId, at), BlockType::divider, {300, 20}, {}, {}},
        {Block::stickyNote(userId, at, u"blue"_qs), BlockType::stickyNote, {200, 200}, {}, {}},
        {Block::voiceNote(userId, at), BlockType::voiceNote, {240, 110}, {}, {}},
        {Block::videoNote(userId, at), BlockType::videoNote, {300, 220}, {}, {}},
        {Block::sketch(userId, at), BlockType::sketch, {40, 40}, {}, {}},
        {Block::icon(userId, at, u"heart"_qs), BlockType::icon, {64, 64}, {}, R"({"iconName":"heart"})"},
    };
    for (const auto &[block, type, size, rawText, content] : cases) {
        SCOPED_TRACE(std::string(rawValue(type).data()));
        EXPECT_EQ(block->blockType(), type);
        EXPECT_EQ(QPointF(block->xPosition(), block->yPosition()), at);
        EXPECT_EQ(QSizeF(block->width(), block->height()), size);
        EXPECT_EQ(block->rawText(), rawText);
        EXPECT_EQ(block->content(), content);
        EXPECT_EQ(block->textColor(), type == BlockType::icon ? u"#333333"_qs : u"#000000"_qs);
        EXPECT_EQ(block->stickyColor(), type == BlockType::stickyNote ? u"blue"_qs : u"yellow"_qs);
        EXPECT_EQ(block->codeLanguage(), type == BlockType::code ? u"rust"_qs : u"swift"_qs);
        EXPECT_EQ(block->createdAt(), block->updatedAt());
        EXPECT_FALSE(block->needsSync() || block->syncedAt() || block->deletedAt() || block->embedding());
    }
}

TEST(Block, NotifiesOnlyOfRealChanges) {
    const auto block = Block::text(QUuid::createUuid(), {}, {});
    const auto snapshot = block->fields();
    int notified = 0;
    QObject::connect(block.get(), &Block::isSelectedChanged, [&notified] { ++notified; });
    QObject::connect(block.get(), &Block::xPositionChanged, [&notified] { ++notified; });
    block->setIsSelected(true);
    block->setIsSelected(true);
    block->setXPosition(0);
    EXPECT_EQ(notified, 1);
    block->setXPosition(std::numeric_limits<double>::quiet_NaN());
    block->setXPosition(std::numeric_limits<double>::infinity());
    EXPECT_EQ(notified, 1) << "a position that no record could carry must not get in";
    block->setXPosition(5);
    EXPECT_EQ(notified, 2);
    EXPECT_EQ(snapshot->xPosition, 0) << "a snapshot must not see later changes";
}

TEST(BlockType, MatchesWireNamesToTheLetter) {
    EXPECT_EQ(blockTypeFromRawValue(u"sticky_note"), BlockType::stickyNote);
    for (const QString &wrong : {u"stickyNote"_qs, u"Text"_qs, u"text "_qs, QString()}) {
        EXPECT_FALSE(blockTypeFromRawValue(wrong)) << qPrintable(wrong);
    }
    for (int place = 0; place < kBlockTypeCount; ++place) {
        const auto type = static_cast<BlockType>(place);
        EXPECT_EQ(blockTypeFromRawValue(QString(rawValue(type))), type);
    }
    EXPECT_EQ(shapeTypeFromRawValue(u"speech_bubble"), ShapeType::speechBubble);
    EXPECT_FALSE(shapeTypeFromRawValue(u"speechBubble"));
}

} // namespace tallowby
