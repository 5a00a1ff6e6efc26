#include "model/AnyCodable.h"
#include "model/Block.h"
#include "model/BlockDTO.h"
#include "model/json/JsonReading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tallowby {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

BlockPtr blockWith(BlockType type, const QByteArray &content) {
    auto block = std::make_shared<Block>(QUuid::createUuid(), type, QRectF(0, 0, 10, 10));
    block->setContent(content);
    return block;
}

} // namespace

TEST(BlockPayload, ReadsAsDefaultsWhatIsNotThereOrOfAnotherType) {
    for (const QByteArray &content : {
             QByteArray(),
             QByteArrayLiteral("null"),
             QByteArrayLiteral("[]"),
             QByteArrayLiteral(R"({"shapeType":"circle","fillColor":"#123456","title":"cut)"),
             QByteArrayLiteral(R"({"shapeType":"circle","fillColor":"#123456","title":"a"} and more)"),
             QByteArrayLiteral(R"({"shapeType":"circle","fillColor":"#123456","title":"a","far":[tru]})"),
             QByteArrayLiteral(R"({"shapeType":"circle","fillColor":"#123456","title":"a","far":1e999})"),
             QByteArrayLiteral(
                 R"({"title":1,"items":{},"cells":"","shapeType":"hexagon","fillColor":7,"strokeColor":"red",
                 "strokeWidth":"3","strokes":true,"fileName":[],"duration":null,"image":5,"iconName":false,
                 "flipHorizontal":1,"flipVertical":"true"})"),
             QByteArrayLiteral("{\"title\":\"\xff\xfe\"}"),
         }) {
        SCOPED_TRACE(content.toStdString());
        const auto block = blockWith(BlockType::shape, content);
        EXPECT_EQ(block->checklistTitle(), QString());
        EXPECT_THAT(block->checklistItems(), IsEmpty());
        EXPECT_THAT(block->tableData(), IsEmpty());
        EXPECT_EQ(block->shapeType(), ShapeType::rectangle);
        EXPECT_EQ(block->fillColor(), u"#FFFFFF"_qs);
        EXPECT_EQ(block->strokeColor(), u"#333333"_qs);
        EXPECT_EQ(block->strokeWidth(), 2.0);
        EXPECT_THAT(block->sketchStrokes(), IsEmpty());
        EXPECT_EQ(block->mediaFileName(), std::nullopt);
        EXPECT_EQ(block->mediaDuration(), 0.0);
        EXPECT_EQ(block->imageData(), std::nullopt);
        EXPECT_EQ(block->iconName(), u"star"_qs);
        EXPECT_FALSE(block->flipHorizontal() || block->flipVertical());
    }
}

TEST(BlockPayload, ReadsWhatIsThereTheLastOfAKeyAndEscapedOnesIncluded) {
    const auto shape =
        blockWith(BlockType::shape, R"({"shapeType":"circle","strokeWidth":2.5,"shape\u0054ype":"speech_bubble",
        "fillColor":"#12aBcF","flipVertical":true,"fileName":"a\"b.m4a","duration":61})");
    EXPECT_EQ(shape->shapeType(), ShapeType::speechBubble);
    EXPECT_EQ(shape->strokeWidth(), 2.5);
    EXPECT_EQ(shape->fillColor(), u"#12aBcF"_qs);
    EXPECT_TRUE(shape->flipVertical());
    EXPECT_EQ(shape->mediaFileName(), u"a\"b.m4a"_qs);
    EXPECT_EQ(shape->mediaDuration(), 61);

    const QUuid id = QUuid::createUuid();
    const auto list = blockWith(
        BlockType::checklist, "{\"title\":\"t\",\"items\":[{\"id\":\"" + id.toByteArray(QUuid::WithoutBraces) +
                                  "\",\"text\":\"milk\",\"isDone\":true},7,{\"id\":\"no uuid\",\"isDone\":\"yes\"}]}");
    const auto items = list->checklistItems();
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0]->id(), id);
    EXPECT_EQ(items[0]->text(), u"milk"_qs);
    EXPECT_TRUE(items[0]->isDone());
    EXPECT_FALSE(items[1]->id().isNull() || items[1]->isDone());

    const auto table = blockWith(BlockType::table, R"({"cells":[["a",1,"c"],"no row",[]]})");
    EXPECT_THAT(table->tableData(), ElementsAre(QStringList({u"a"_qs, u""_qs, u"c"_qs}), QStringList()));

    const auto sketch = blockWith(BlockType::sketch, R"({"strokes":[
        {"points":[{"x":1,"y":2},{"x":1},{"y":"2","x":1},[],{"x":-3.5,"y":4,"pressure":0.25,"z":[1]}],"color":"#102030","width":3},
        {"points":[{"x":1,"y":2}],"width":3},{"points":[],"color":"ink","width":1},"no stroke"]})");
    EXPECT_THAT(sketch->sketchStrokes(), ElementsAre(SketchStroke{{{1, 2, 1}, {-3.5, 4, 0.25}}, u"#102030"_qs, 3},
                                                     SketchStroke{{}, u"#333333"_qs, 1}));
}

TEST(BlockPayload, WritersMergeAndKeepTheirPlace) {
    const auto list = blockWith(BlockType::checklist, R"({ "title": "kept", "items": 5, "odd": {"a": [1, "}"]} })");
    list->setChecklistItems({std::make_shared<ChecklistItem>(QUuid(), u"q\"\n"_qs, true)});
    EXPECT_EQ(
        list->content(),
        R"({"title":"kept","items":[{"id":"00000000-0000-0000-0000-000000000000","text":"q\"\n","isDone":true}],"odd":{"a":[1,"}"]}})");

    const auto voice = blockWith(BlockType::voiceNote, {});
    voice->setMediaFileName(std::nullopt);
    EXPECT_EQ(voice->content(), QByteArray()) << "nothing to take out";
    voice->setMediaFileName(u"n.m4a"_qs);
    voice->setMediaDuration(12.5);
    voice->setMediaDuration(std::numeric_limits<double>::infinity());
    EXPECT_EQ(voice->content(), R"({"fileName":"n.m4a","duration":12.5})");
    voice->setMediaFileName(std::nullopt);
    EXPECT_EQ(voice->content(), R"({"duration":12.5})");

    const auto table = blockWith(BlockType::table, R"({"gone":1})");
    table->setTableData({{u"a"_qs, u"b"_qs, u""_qs, u"d"_qs}, {u"e"_qs, u"f"_qs, u"g"_qs, u"h"_qs}});
    EXPECT_EQ(table->content(), R"({"rows":2,"columns":4,"cells":[["a","b","","d"],["e","f","g","h"]]})");
    table->setTableData({});
    EXPECT_EQ(table->content(), R"({"rows":0,"columns":0,"cells":[]})");

    const auto broken = blockWith(BlockType::shape, R"({"cut":)");
    broken->setShapeType(ShapeType::diamond);
    EXPECT_EQ(broken->content(), R"({"shapeType":"diamond"})");
    AnyCodable deep;
    for (int depth = 0; depth < json::kMaximumNesting; ++depth) {
        deep = AnyCodable::Array{deep};
    }
    broken->setContentField(u"deep"_qs, deep);
    EXPECT_EQ(broken->content(), R"({"shapeType":"diamond"})") << "what could not be read again is not written";
}

TEST(BlockPayload, SketchesAreFittedToTheirPointsAndMoved) {
    const auto fitted = [](std::vector<SketchPoint> points) {
        const auto sketch = blockWith(BlockType::sketch, {});
        sketch->setSketchStrokes({{std::move(points), u"#000000"_qs, 2}});
        sketch->recomputeSketchBounds(10);
        return QRectF(sketch->xPosition(), sketch->yPosition(), sketch->width(), sketch->height());
    };
    EXPECT_EQ(fitted({{100, 50}}), QRectF(90, 40, 60, 60));
    EXPECT_EQ(fitted({{200, 10}, {0, 0}}), QRectF(-10, -10, 220, 60));
    EXPECT_EQ(fitted({}), QRectF(0, 0, 10, 10)) << "nothing to fit to";

    const QByteArray untidy =
        R"({ "strokes": [{"points":[{"x":1,"y":2,"pressure":0.5}],"color":"#000000","width":2}], "a": 1 })";
    const auto sketch = blockWith(BlockType::sketch, untidy);
    sketch->shiftSketchPoints(0, 0);
    EXPECT_EQ(sketch->content(), untidy);
    sketch->shiftSketchPoints(10, -0.5);
    EXPECT_EQ(sketch->content(),
              R"({"strokes":[{"points":[{"x":11,"y":1.5,"pressure":0.5}],"color":"#000000","width":2}],"a":1})");
    const QByteArray before = sketch->content();
    sketch->shiftSketchPoints(std::numeric_limits<double>::infinity(), 0);
    EXPECT_EQ(sketch->content(), before);
    const auto empty = blockWith(BlockType::sketch, {});
    empty->shiftSketchPoints(1, 1);
    EXPECT_EQ(empty->content(), QByteArray());
}

TEST(BlockPayload, APictureIsItsFileOrNone) {
    EXPECT_EQ(blockWith(BlockType::image, R"({"image":"QUJD"})")->imageData(), "ABC");
    EXPECT_EQ(blockWith(BlockType::image, R"({"image":"QUJ*"})")->imageData(), std::nullopt);
}

} // namespace tallowby
