#include "search/Excerpt.h"

#include <gtest/gtest.h>

namespace tallowby {

namespace {

Excerpt excerpt(BlockType type, const QString &text, const QString &query, const QByteArray &content = {}) {
    BlockFields fields;
    fields.blockType = type;
    fields.rawText = text;
    fields.content = content;
    return excerptOf(fields, query, QStringLiteral("Kind"), QColor(Qt::red));
}

constexpr QLatin1StringView kMark{"<b><font color=\"#ff0000\">"};
constexpr QLatin1StringView kEnd{"</font></b>"};

} // namespace

TEST(ExcerptTest, ShowsHowABlockBeginsAndWhereItMatches) {
    const auto inTitle = excerpt(BlockType::text, u"Buy <milk>\nand bread"_qs, u"MILK"_qs);
    EXPECT_EQ(inTitle.title, u"Buy &lt;" + kMark + u"milk" + kEnd + u"&gt;");
    EXPECT_EQ(inTitle.snippet, u"and bread");

    const QString inside = u"Title\n"_qs + u"long way "_qs.repeated(20) + u"to the needle & beyond";
    const auto far = excerpt(BlockType::text, inside, u"needle"_qs);
    EXPECT_EQ(far.title, u"Title");
    EXPECT_EQ(far.snippet, u"…way long way to the " + kMark + u"needle" + kEnd + u" &amp; beyond");

    const auto item =
        excerpt(BlockType::checklist, {}, u"egg"_qs,
                R"({"items":[{"id":"","text":"milk","isDone":false},{"id":"","text":"eggs","isDone":true}]})");
    EXPECT_EQ(item.title, u"milk");
    EXPECT_EQ(item.snippet, kMark + u"egg" + kEnd + u"s");
    EXPECT_EQ(item.plain, u"milk, eggs");

    // Found by its meaning: nothing to mark. Without words at all the kind stands for it.
    EXPECT_EQ(excerpt(BlockType::text, u"a tiger"_qs, u"cat"_qs).title, u"a tiger");
    EXPECT_EQ(excerpt(BlockType::image, {}, u"cat"_qs).title, u"Kind");
}

TEST(ExcerptTest, SaysHowLongAgo) {
    const Scheduler::WallClock::time_point now{std::chrono::seconds(2'000'000'000)};
    const auto age = [now](double secondsAgo) {
        return ageInWords({Timestamp::from(now).secondsSinceReference - secondsAgo}, now);
    };
    EXPECT_EQ(age(-500), u"just now");
    EXPECT_EQ(age(59), u"just now");
    EXPECT_EQ(age(60), u"1 min ago");
    EXPECT_EQ(age(3599), u"59 min ago");
    EXPECT_EQ(age(23.5 * 3600), u"23 h ago");
    EXPECT_EQ(age(6.9 * 86400), u"6 d ago");
    EXPECT_EQ(age(15 * 86400), u"2 wk ago");
    EXPECT_EQ(age(100 * 86400), u"3 mo ago");
    EXPECT_EQ(age(1000.0 * 86400), u"2 yr ago");
    EXPECT_EQ(age(1e300), u"9999 yr ago");
}

} // namespace tallowby
