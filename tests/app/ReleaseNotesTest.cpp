#include "app/whatsnew/ReleaseNotes.h"

#include <gtest/gtest.h>

namespace tallowby {
namespace {

TEST(ReleaseNotes, readsVersionsWithTheirPoints) {
    const auto notes = parseReleaseNotes("# Changes\n\n- belongs to nothing\n\n## 1.1.0 (2026-12-01)\n\n"
                                         "- Search, which\n  finds `words`.\n- Faster.\n\nA paragraph.\n"
                                         "  not a point\n## 1.0.0\n- The beginning: *é*\n### Inside\n");
    EXPECT_EQ(notes, (QList<ReleaseNotes>{{QStringLiteral("1.1.0"),
                                           QStringLiteral("2026-12-01"),
                                           {QStringLiteral("Search, which finds `words`."), QStringLiteral("Faster.")}},
                                          {QStringLiteral("1.0.0"), {}, {QStringLiteral("The beginning: *é*")}}}));
    for (const QByteArray &nothing : {QByteArray(), QByteArray("no heading"), QByteArray("##\n- x\n##  \n")}) {
        EXPECT_TRUE(parseReleaseNotes(nothing).isEmpty()) << nothing.constData();
    }
}

TEST(ReleaseNotes, thisVersionHasSomethingToSay) {
    const auto notes = releaseNotes();
    ASSERT_FALSE(notes.isEmpty());
    EXPECT_EQ(notes.first().version, QStringLiteral(TALLOWBY_VERSION));
    EXPECT_FALSE(notes.first().points.isEmpty());
}

} // namespace
} // namespace tallowby
