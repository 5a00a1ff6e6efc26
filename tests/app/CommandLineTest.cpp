#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace tallowby {
namespace {

TEST(CommandLine, understandsEachOptionOnItsOwn) {
    EXPECT_EQ(parseCommandLine({}), LaunchAction::run);
    EXPECT_EQ(parseCommandLine({QStringLiteral("--toggle")}), LaunchAction::toggle);
    EXPECT_EQ(parseCommandLine({QStringLiteral("--settings")}), LaunchAction::settings);
    EXPECT_EQ(parseCommandLine({QStringLiteral("--quit")}), LaunchAction::quit);
    EXPECT_EQ(parseCommandLine({QStringLiteral("--self-test")}), LaunchAction::selfTest);
}

TEST(CommandLine, refusesWhatItDoesNotKnow) {
    for (const QStringList &arguments :
         {QStringList{QStringLiteral("toggle")}, QStringList{QStringLiteral("--Toggle")}, QStringList{QString()},
          QStringList{QStringLiteral("--toggle"), QStringLiteral("--quit")}, QStringList{QStringLiteral("note.txt")}}) {
        EXPECT_FALSE(parseCommandLine(arguments)) << qPrintable(arguments.join(u' '));
    }
}

TEST(CommandLine, helpNamesEveryOptionOfTheUsageLine) {
    const QString usage = kUsageLine;
    for (const QString &word : usage.split(u' ')) {
        const QString option = word.startsWith(u'[') ? word.mid(1) : word.chopped(word.endsWith(u']') ? 1 : 0);
        if (option.startsWith(u"--")) {
            EXPECT_TRUE(helpText().contains(u"\n  " + option)) << qPrintable(option);
        }
    }
}

} // namespace
} // namespace tallowby
