#include "model/BlockRecordReader.h"
#include "model/BlockRecordWriter.h"
#include "model/TimestampCoding.h"
#include "model/json/JsonReading.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace tallowby {

namespace {

const QByteArray kId = "6BA7B810-9DAD-11D1-80B4-00C04FD430C8";
const QByteArray kUserId = "7D444840-9DC0-11D1-B245-5FFDCE74FAD2";
/// The required keys, all but the closing brace.
const QByteArray kRequired = R"({"id":")" + kId + R"(","user_id":")" + kUserId +
                             R"(","x_position":1,"y_position":2.5,"width":300,"height":200,"z_index":-4,)"
                             R"("block_type":"text","created_at":760000000.25,"updated_at":760000001)";
const QByteArray kDefaults = R"(,"font_size":16,"text_color":"#000000","rotation":0,"is_bold":false,"is_italic":false,)"
                             R"("is_strikethrough":false})";

std::optional<QString> refusal(const QByteArray &json, std::vector<BlockDTO> *records = nullptr) {
    JsonBuffer document(std::size_t(json.size()));
    std::memcpy(document.data(), json.constData(), document.size());
    return BlockRecordReader(kFileTimestamps).read(document, [records](BlockDTO record) {
        if (records) {
            records->push_back(std::move(record));
        }
    });
}

/// The one record of the array, with `members` after the required ones.
BlockDTO readOne(const QByteArray &members) {
    std::vector<BlockDTO> records;
    const auto refused = refusal('[' + kRequired + members + "}]", &records);
    EXPECT_FALSE(refused) << qPrintable(*refused) << " in " << members.constData();
    return records.empty() ? BlockDTO() : records.front();
}

QByteArray written(const BlockFields &fields) {
    BlockRecordWriter writer(kFileTimestamps);
    writer.startArray();
    const auto problem = writer.write(fields);
    writer.endArray();
    return problem ? problem->toUtf8() : QByteArray(writer.text().data(), qsizetype(writer.text().size()));
}

} // namespace

TEST(BlockRecord, CarriesEveryFieldInTheDeclaredOrder) {
    const QByteArray full = R"([{"id":")" + kId + R"(","user_id":")" + kUserId +
                            R"(","x_position":-1.25,"y_position":1e+300,"width":0.1,"height":200,)"
                            R"("z_index":-9223372036854775808,"block_type":"sticky_note",)"
                            R"("content":{"rows":3,"flag":true,"w":2.5,"none":null,"cells":[["a\n\"é😀"],[]]},)"
                            R"("raw_text":"a\u0000\\\n\t\u0001é😀","embedding":[0.1,-2,1.1754944e-38],"tags":["x",""],)"
                            R"("is_todo":true,"is_event":true,"due_date":760000000.125,"created_at":760000000.123456,)"
                            R"("updated_at":-5,"synced_at":0,"deleted_at":761000000,"font_size":12.5,)"
                            R"("text_color":"#A1B2C3","rotation":-90,"is_bold":true,"is_italic":true,)"
                            R"("is_strikethrough":true}])";
    std::vector<BlockDTO> records;
    ASSERT_EQ(refusal(full, &records), std::nullopt);
    const auto fields = std::move(records.at(0)).toFields();
    EXPECT_EQ(fields->stickyColor, u"yellow"_qs);
    EXPECT_EQ(fields->rawText->at(1), QChar(0));
    EXPECT_EQ(fields->zIndex, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(fields->deletedAt->secondsSinceReference, 761000000);
    EXPECT_EQ(written(*fields).toStdString(), full.toStdString());
}

TEST(BlockRecord, FillsInWhatIsAbsentAndWritesNoKeyForIt) {
    const auto block =
        readOne(R"(,"due_date":null,"content":null,"tags":null,"text_color":null,"unknown":[{"a":1}])").toBlock();
    EXPECT_EQ(block->content(), "null");
    EXPECT_FALSE(block->dueDate() || block->rawText() || block->isTodo() || block->needsSync());
    EXPECT_EQ(block->fontSize(), 16);
    EXPECT_EQ(written(*block->fields()),
              '[' + kRequired.left(kRequired.indexOf(",\"created_at")) +
                  R"(,"tags":[],"is_todo":false,"is_event":false,"created_at":760000000.25,"updated_at":760000001)" +
                  kDefaults + ']');
}

TEST(BlockRecord, TakesOtherSpellingsOfTheSame) {
    std::vector<BlockDTO> records;
    ASSERT_EQ(
        refusal(
            "\n[ " +
                kRequired.toLower().replace("300", "3.0e2").replace("-4", "-4.0").replace("\"id\"", "\"\\u0069d\"") +
                " } ]\n",
            &records),
        std::nullopt);
    EXPECT_EQ(records.at(0).id, QUuid::fromString(QLatin1StringView(kId)));
    EXPECT_EQ(records.at(0).width, 300);
    EXPECT_EQ(records.at(0).zIndex, -4);
    EXPECT_TRUE(refusal("[]", &records) == std::nullopt && records.size() == 1);

    BlockDTO unknown = readOne({});
    unknown.blockType = u"stickyNote"_qs;
    EXPECT_EQ(std::move(unknown).toFields()->blockType, BlockType::text);
}

TEST(BlockRecord, BringsPayloadsIntoOneForm) {
    const struct {
        QByteArray in;
        QByteArray out;
    } cases[] = {
        {R"({})", R"({})"},
        {R"({"a":[],"b":{}})", R"({"a":[],"b":{}})"},
        {"{ \"a\" : [ 1 , 2.0 ] ,\n \"b\" : 1.50 }", R"({"a":[1,2],"b":1.5})"},
        {R"({"a":1e3,"b":-0,"c":1000000000000000000000000})", R"({"a":1000,"b":0,"c":1e+24})"},
        {R"({"a":0.30000000000000004,"b":0.10000000000000000555,"c":-123.45678901234567})",
         R"({"a":0.30000000000000004,"b":0.1,"c":-123.45678901234567})"},
        {R"({"a":1,"a":2})", R"({"a":2})"},
        {R"({"\u0061":"\u0041"})", R"({"a":"A"})"},
        {R"({"a":{"b\"c":1},"d":"x\"y"})", R"({"a":{"b\"c":1},"d":"x\"y"})"},
    };
    for (const auto &[in, out] : cases) {
        EXPECT_EQ(readOne(",\"content\":" + in + ",\"raw_text\":\"after\"").content, out) << in.constData();
        BlockFields fields;
        fields.content = in;
        json::TextParser parser;
        EXPECT_EQ(BlockDTO(fields, parser).content, out) << in.constData();
    }
    for (const QByteArray &noObject : {QByteArray(), QByteArray("null"), QByteArray("[1]"), QByteArray("{\"a\":1} x"),
                                       QByteArray("{\"a\":1e999}"), QByteArray("{")}) {
        BlockFields fields;
        fields.content = noObject;
        EXPECT_FALSE(written(fields).contains("content")) << noObject.constData();
    }
}

TEST(BlockRecord, IsRefusedWithTheRecordAndTheKey) {
    const auto with = [](const QByteArray &members) -> QByteArray {
        return '[' + kRequired + "}," + kRequired + members + "}]";
    };
    const auto changed = [](const QByteArray &from, const QByteArray &to) -> QByteArray {
        return '[' + QByteArray(kRequired).replace(from, to) + "}]";
    };
    const QByteArray deep = QByteArray(70, '[') + QByteArray(70, ']');
    const struct {
        QByteArray json;
        QString reason;
    } cases[] = {
        {"", u"the document is no JSON"_qs},
        {"{}", u"the document is no array of records"_qs},
        {"null", u"the document is no array of records"_qs},
        {"[" + kRequired + "}", u"the document is no JSON"_qs},
        {"[" + kRequired + "}] []", u"the document goes on after its end"_qs},
        {"[" + kRequired + "},]", u"record 1: it is no object"_qs},
        {"[" + kRequired + "},7]", u"record 1: it is no object"_qs},
        {"[" + kRequired + ",\"raw_text\":\"\xff\"}]", u"the document is no JSON"_qs},
        {changed("\"z_index\":-4,", ""), u"record 0: \"z_index\" is missing"_qs},
        {changed("\"y_position\":2.5", "\"y_position\":null"), u"record 0: \"y_position\" is no number"_qs},
        {changed("2.5", "\"2.5\""), u"record 0: \"y_position\" is no number"_qs},
        {changed("2.5", "1e999"), u"record 0: \"y_position\" holds bad JSON or a number out of range"_qs},
        {changed("2.5", "02.5"), u"record 0: \"y_position\" holds bad JSON or a number out of range"_qs},
        {changed("-4", "4.5"), u"record 0: \"z_index\" is no whole number of 64 bits"_qs},
        {changed("-4", "9223372036854775808"), u"record 0: \"z_index\" is no whole number of 64 bits"_qs},
        {changed(kUserId, "{" + kUserId.mid(1)), u"record 0: \"user_id\" is no UUID"_qs},
        {changed("760000001", "\"2025-01-29\""), u"record 0: \"updated_at\" is not a number of seconds"_qs},
        {with(",\"id\":\"" + kId + "\""), u"record 1: \"id\" stands twice"_qs},
        {with(",\"tags\":[1]"), u"record 1: \"tags\" is no array of strings"_qs},
        {with(",\"embedding\":[1e39]"), u"record 1: \"embedding\" is no array of numbers of 32 bits"_qs},
        {with(",\"is_todo\":1"), u"record 1: \"is_todo\" is no boolean"_qs},
        {with(",\"is_todo\":truth"), u"record 1: \"is_todo\" holds bad JSON or a number out of range"_qs},
        {with(",\"raw_text\":\"\\ud800\""), u"record 1: \"raw_text\" holds bad JSON or a number out of range"_qs},
        {with(",\"content\":[]"), u"record 1: \"content\" is no object"_qs},
        {with(",\"content\":{\"a\":" + deep + "}"), u"record 1: \"content\" nests deeper than 64"_qs},
        {with(",\"content\":{\"a\":nul}"), u"record 1: \"content\" holds bad JSON or a number out of range"_qs},
        {with(",\"content\":{\"a\" 1}"), u"record 1: \"content\" holds bad JSON or a number out of range"_qs},
        {with(",\"other\":" + deep), u"record 1: an unknown key has a value that is no JSON or nests too deep"_qs},
        {with(",\"other\":+1"), u"record 1: an unknown key has a value that is no JSON or nests too deep"_qs},
        {with(",\"\\q\":1"), u"record 1: a key is no text"_qs},
    };
    for (const auto &[json, reason] : cases) {
        const auto refused = refusal(json);
        ASSERT_TRUE(refused) << json.constData();
        EXPECT_TRUE(refused->startsWith(reason)) << json.constData() << "\n" << qPrintable(*refused);
    }
}

TEST(BlockRecord, EveryCutAndFlippedByteIsReadOrRefusedButNeverWorse) {
    const QByteArray sound = '[' + kRequired + R"(,"content":{"a":["b\n",{"c":[1.5,true,null]}]},"tags":["d"]}])";
    for (qsizetype end = 0; end < sound.size(); ++end) {
        EXPECT_TRUE(refusal(sound.left(end))) << end;
        const bool isSound = end == 1 || end == sound.size() - 1;
        EXPECT_EQ(refusal(sound.left(end) + ']').has_value(), !isSound) << end;
        EXPECT_FALSE(AnyCodable::fromJson(sound.left(end))) << end;
    }
    for (qsizetype place = 0; place < sound.size(); ++place) {
        for (const char byte : {'"', '{', '}', '[', ']', ',', ':', '\\', '\0', '\xff', '9', ' '}) {
            QByteArray hurt = sound;
            hurt[place] = byte;
            std::vector<BlockDTO> records;
            if (!refusal(hurt, &records)) {
                EXPECT_EQ(records.size(), 1U);
                EXPECT_EQ(refusal(written(*std::move(records.front()).toFields())), std::nullopt) << hurt.constData();
            }
        }
    }
}

TEST(BlockRecord, WritesWhatItCanAndSaysWhatItCannot) {
    BlockFields fields;
    fields.rawText = u"half "_qs + QChar(0xD800) + u" pair"_qs;
    EXPECT_EQ(refusal(written(fields)), std::nullopt) << "a text that no JSON could carry must not stop the saving";
    fields.embedding = std::vector{1.0F, std::numeric_limits<float>::infinity()};
    EXPECT_EQ(written(fields), "\"embedding\" is not finite");
}

} // namespace tallowby
