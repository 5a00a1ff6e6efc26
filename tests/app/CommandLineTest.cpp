#include "app/CommandLine.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>

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

QSet<QString> optionsIn(const QString &text, const QString &pattern) {
    static const QString kName = QStringLiteral("([a-z][a-z-]+)");
    QSet<QString> options;
    for (auto match = QRegularExpression(QString(pattern).replace(u"%NAME"_qs, kName)).globalMatch(text);
         match.hasNext();) {
        options << match.next().captured(1);
    }
    return options;
}

TEST(CommandLine, whereverItIsDescribedItHasTheSameOptions) {
    const QSet<QString> options = optionsIn(helpText(), QStringLiteral("\n  --%NAME"));
    EXPECT_EQ(optionsIn(kUsageLine, QStringLiteral("--%NAME")), options);
    struct Description {
        QString file;
        QString pattern;
    };
    for (const Description &description : {
             Description{QStringLiteral("completions/tallowby.bash"), QStringLiteral("--%NAME[ ']")},
             Description{QStringLiteral("completions/_tallowby"), QStringLiteral("'--%NAME\\[")},
             Description{QStringLiteral("completions/tallowby.fish"), QStringLiteral(R"(\$unused -l %NAME )")},
             Description{QStringLiteral("tallowby.1"), QStringLiteral(R"(\n\.B \\-\\-%NAME)")},
         }) {
        QFile file(QStringLiteral(TALLOWBY_PACKAGING "/") + description.file);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
        EXPECT_EQ(optionsIn(QString::fromUtf8(file.readAll()), description.pattern), options)
            << qPrintable(description.file);
    }
    // What the desktop's menus start.
    QFile entry(QStringLiteral(TALLOWBY_PACKAGING "/org.tallowby.Tallowby.desktop"));
    ASSERT_TRUE(entry.open(QIODevice::ReadOnly));
    const auto started = optionsIn(QString::fromUtf8(entry.readAll()), QStringLiteral("\nExec=tallowby --%NAME\n"));
    EXPECT_EQ(started, (QSet{QStringLiteral("toggle"), QStringLiteral("settings"), QStringLiteral("quit")}));
}

} // namespace
} // namespace tallowby
