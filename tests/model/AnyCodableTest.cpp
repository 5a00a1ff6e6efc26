#include "model/AnyCodable.h"

#include "model/Block.h"

#include <gtest/gtest.h>

#include <limits>

namespace tallowby {

namespace {

QByteArray rewritten(QByteArrayView json) {
    const auto value = AnyCodable::fromJson(json);
    return value ? value->toJson().value_or("unwritable") : "refused";
}

QByteArray nested(int levels) {
    return QByteArray(levels, '[') + QByteArray(levels, ']');
}

} // namespace

TEST(AnyCodable, KeepsValuesAndWritesThemInTheirShortestForm) {
    const struct {
        QByteArray in;
        QByteArray out;
    } cases[] = {
        {"3", "3"},
        {"3.0", "3"},
        {"-0.0", "0"},
        {"3e2", "300"},
        {"2.5", "2.5"},
        {"2.50", "2.5"},
        {"0.1", "0.1"},
        {"9223372036854775807", "9223372036854775807"},
        {"9223372036854775808", "9223372036854775808"},
        {"1e-7", "1e-07"},
        {"true", "true"},
        {"null", "null"},
        {R"("a\u00e9\n\/")", "\"aé\\n/\""},
        {R"("\ud83d\ude00")", "\"😀\""},
        {"  [ 1 , [ ] , { } ]  ", "[1,[],{}]"},
        {R"({"rows":3,"flag":true,"w":2.5,"cells":[["a"]]})", R"({"rows":3,"flag":true,"w":2.5,"cells":[["a"]]})"},
        {R"({"a":1,"b":2,"\u0061":3})", R"({"b":2,"a":3})"},
        {nested(64), nested(64)},
    };
    for (const auto &[in, out] : cases) {
        EXPECT_EQ(rewritten(in), out) << in.constData();
    }
}

TEST(AnyCodable, RefusesWhatIsNotOneSoundValue) {
    for (const QByteArray &hostile :
         {QByteArray(), QByteArray("1 2"), QByteArray("1],[2"), QByteArray("[1"), QByteArray("[1,]"),
          QByteArray("{\"a\"}"), QByteArray("1e400"), QByteArray("NaN"), QByteArray("01"), QByteArray("tru"),
          QByteArray("nullx"), QByteArray("\"\\ud800\""), QByteArray("\"\xff\""), QByteArray("\"a\nb\""),
          QByteArray("{\"\\q\":1}"), nested(65)}) {
        EXPECT_EQ(rewritten(hostile), "refused") << hostile.constData();
    }
    EXPECT_FALSE(AnyCodable(std::numeric_limits<double>::infinity()).toJson());
    // The parser would take this for an array that ends in the bytes after the text.
    EXPECT_EQ(rewritten("[[1]"), "refused");
}

TEST(Block, SetsOnePayloadFieldAndLeavesTheOthers) {
    const auto block = Block::divider(QUuid::createUuid(), {});
    block->setContent(R"( {"title":"Tea", "items":[1.0]} )");
    block->setContentField(QStringLiteral("done"), true);
    EXPECT_EQ(block->content(), R"({"title":"Tea","items":[1],"done":true})");
    block->setContentField(QStringLiteral("title"), QStringLiteral("Mint"));
    EXPECT_EQ(block->content(), R"({"title":"Mint","items":[1],"done":true})");

    block->setContentField(QStringLiteral("title"), std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(block->content(), R"({"title":"Mint","items":[1],"done":true})");

    for (const QByteArray &noObject : {QByteArray(), QByteArray("null"), QByteArray("[1]"), QByteArray("{broken")}) {
        block->setContent(noObject);
        block->setContentField(QStringLiteral("a"), 1);
        EXPECT_EQ(block->content(), R"({"a":1})");
    }
}

} // namespace tallowby
