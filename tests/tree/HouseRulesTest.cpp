#include "tree/SourceTree.h"

#include <gtest/gtest.h>

#include <QMap>
#include <QRegularExpression>

namespace tallowby::test {

namespace {

constexpr int kMostLines = 500;
constexpr int kMostFiles = 25;

struct Rule {
    QRegularExpression pattern;
    /// Endings of the files that it holds for; empty for all.
    QStringList endings;
    const char *why;
};

/// Each pattern is written so that it does not match its own line.
const std::vector<Rule> &rules() {
    const auto words = [](const char *pattern) {
        return QRegularExpression(QString::fromLatin1(pattern), QRegularExpression::CaseInsensitiveOption);
    };
    static const std::vector<Rule> kRules{
        {QRegularExpression(QStringLiteral(R"(\b(TO[D]O|FIX[M]E|XX[X])\b)")), {}, "finish it, or leave it out"},
        {words(R"(\bspe[c]\b|\bpart \d+\.\d|\bissue #?\d)"), {}, "say it in the words of the program itself"},
        {QRegularExpression(QStringLiteral(R"((^|["'`\s=(:])/(hom[e]|wor[k]|roo[t]|User[s])/)")),
         {},
         "a path of one machine means nothing on another"},
        {QRegularExpression(QStringLiteral(R"(\s+$|\t)")),
         {QStringLiteral(".cpp"), QStringLiteral(".h"), QStringLiteral(".qml"), QStringLiteral(".md")},
         "no tabs, no blanks at the end of a line"},
        {QRegularExpression(QStringLiteral(R"(\bfunction\b[^"]*\()")),
         {QStringLiteral(".qml")},
         "behaviour is C++; a view only declares"},
    };
    return kRules;
}

bool isText(const QString &path) {
    static const QStringList kPictures{QStringLiteral(".png"), QStringLiteral(".ico"), QStringLiteral(".jpg")};
    return std::ranges::none_of(kPictures, [&path](const QString &ending) { return path.endsWith(ending); });
}

bool holdsFor(const Rule &rule, const QString &path) {
    return rule.endings.isEmpty() ||
           std::ranges::any_of(rule.endings, [&path](const QString &ending) { return path.endsWith(ending); });
}

} // namespace

TEST(HouseRules, LinesSayNothingThatDoesNotBelong) {
    const SourceTree tree;
    for (const QString &path : tree.files()) {
        if (!isText(path)) {
            continue;
        }
        for (const SourceLine &line : tree.lines(path)) {
            for (const Rule &rule : rules()) {
                EXPECT_FALSE(holdsFor(rule, path) && rule.pattern.match(line.text).hasMatch())
                    << qPrintable(path) << ":" << line.number << ": " << rule.why << ": "
                    << qPrintable(line.text.trimmed());
            }
        }
    }
}

TEST(HouseRules, ViewsNameTheirColours) {
    static const QRegularExpression kColour(QStringLiteral(R"re("#[0-9a-fA-F]{3,8}")re"));
    const SourceTree tree;
    for (const QString &path : tree.files(QStringLiteral("src"), {QStringLiteral(".qml")})) {
        if (path.endsWith(u"/Theme.qml")) {
            continue;
        }
        for (const SourceLine &line : tree.lines(path)) {
            EXPECT_FALSE(kColour.match(line.text).hasMatch())
                << qPrintable(path) << ":" << line.number << ": a colour belongs into Theme";
        }
    }
}

TEST(HouseRules, FilesAndFoldersStaySmall) {
    const SourceTree tree;
    QMap<QString, int> filesInFolder;
    for (const QString &path : tree.files()) {
        ++filesInFolder[path.section(u'/', 0, -2)];
        const bool isCode = path.startsWith(u"src/") || path.startsWith(u"tests/") || path.startsWith(u"bench/");
        if (isCode && isText(path)) {
            const int lines = int(tree.text(path).count(u'\n'));
            EXPECT_LE(lines, kMostLines) << qPrintable(path) << " wants to become two files";
        }
    }
    for (auto folder = filesInFolder.cbegin(); folder != filesInFolder.cend(); ++folder) {
        EXPECT_LE(folder.value(), kMostFiles) << qPrintable(folder.key()) << "/ wants a new room";
    }
}

} // namespace tallowby::test
