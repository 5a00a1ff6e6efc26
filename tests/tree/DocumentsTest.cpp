#include "tree/SourceTree.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QRegularExpression>

namespace tallowby::test {

namespace {

QStringList documents(const SourceTree &tree) {
    return tree.files({}, {QStringLiteral(".md")});
}

/// Whether a text in backticks names a file or folder of this repository, and which.
QString namedPath(const QString &quoted) {
    static const QRegularExpression kPath(
        QStringLiteral(R"(^(?:\./)?((?:src|tests|tools|docs|cmake|bench|packaging|supabase|\.ci))"
                       R"((?:/[\w.-]+)*/?|run|test)$)"));
    const auto match = kPath.match(quoted);
    return match.hasMatch() ? match.captured(1) : QString();
}

} // namespace

TEST(Documents, PathsThatTheyNameExist) {
    static const QRegularExpression kQuoted(QStringLiteral("`([^`]+)`"));
    static const QRegularExpression kLink(QStringLiteral(R"(\]\(([^)#:]+)(?:#[^)]*)?\))"));
    const SourceTree tree;
    int named = 0;
    for (const QString &document : documents(tree)) {
        const QString folder = document.contains(u'/') ? document.section(u'/', 0, -2) + u'/' : QString();
        for (const SourceLine &line : tree.lines(document)) {
            for (auto quoted = kQuoted.globalMatch(line.text); quoted.hasNext();) {
                const QString path = namedPath(quoted.next().captured(1));
                if (!path.isEmpty()) {
                    ++named;
                    EXPECT_TRUE(tree.contains(path))
                        << qPrintable(document) << ":" << line.number << ": there is no " << qPrintable(path);
                }
            }
            for (auto link = kLink.globalMatch(line.text); link.hasNext();) {
                const QString path = QDir::cleanPath(folder + link.next().captured(1));
                ++named;
                EXPECT_TRUE(tree.contains(path))
                    << qPrintable(document) << ":" << line.number << ": there is no " << qPrintable(path);
            }
        }
    }
    EXPECT_GT(named, 10) << "the documents are not where this test looks for them";
}

TEST(Documents, EveryPackageIsAccountedFor) {
    const SourceTree tree;
    const QString reasons = tree.text(QStringLiteral("docs/dependencies.md"));
    for (const QString &list : tree.files(QStringLiteral("tools/packages"), {QStringLiteral(".txt")})) {
        for (const SourceLine &line : tree.lines(list)) {
            if (line.text.isEmpty() || line.text.startsWith(u'#')) {
                continue;
            }
            EXPECT_TRUE(reasons.contains(u'`' + line.text + u'`'))
                << qPrintable(list) << ":" << line.number << ": docs/dependencies.md does not say what "
                << qPrintable(line.text) << " is for";
        }
    }
}

} // namespace tallowby::test
