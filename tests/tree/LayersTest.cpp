#include "tree/SourceTree.h"

#include <gtest/gtest.h>

#include <QMap>
#include <QRegularExpression>
#include <QSet>

namespace tallowby::test {

namespace {

/// Which folders of src/ each of them may reach into, besides itself. Arrows point down only; nothing may reach into
/// `app`, and `app` may reach into everything.
const QMap<QString, QSet<QString>> &allowedFolders() {
    static const QMap<QString, QSet<QString>> kAllowed = [] {
        const QSet<QString> platform{QStringLiteral("platform")};
        const QSet<QString> model = platform + QSet{QStringLiteral("model")};
        const QSet<QString> storage = model + QSet{QStringLiteral("storage")};
        const QSet<QString> canvas = storage + QSet{QStringLiteral("canvas")};
        const QSet<QString> sync = storage + QSet{QStringLiteral("sync")};
        const QSet<QString> media = storage + QSet{QStringLiteral("media")};
        const QMap<QString, QSet<QString>> below{
            {QStringLiteral("platform"), {}},           {QStringLiteral("model"), platform},
            {QStringLiteral("storage"), model},         {QStringLiteral("canvas"), storage},
            {QStringLiteral("sync"), storage},          {QStringLiteral("media"), storage},
            {QStringLiteral("blocks"), canvas + media}, {QStringLiteral("flip"), canvas},
            {QStringLiteral("search"), canvas + sync},  {QStringLiteral("guidance"), canvas},
            {QStringLiteral("feedback"), sync + media},
        };
        QMap<QString, QSet<QString>> all = below;
        all[QStringLiteral("app")] = QSet(below.keyBegin(), below.keyEnd());
        return all;
    }();
    return kAllowed;
}

QString folderOf(const QString &path) {
    return path.section(u'/', 1, 1);
}

/// Fails when the line of a file in `folder` names another folder that it must not know.
void expectAllowed(const QString &where, const QString &folder, const QString &target) {
    if (target == folder || allowedFolders().value(folder).contains(target)) {
        return;
    }
    const QStringList allowed = allowedFolders().value(folder).values();
    ADD_FAILURE() << qPrintable(where) << ": " << qPrintable(folder) << " must not know " << qPrintable(target)
                  << "; it may know: " << qPrintable(allowed.isEmpty() ? QStringLiteral("none") : allowed.join(u' '));
}

QString place(const QString &path, int line) {
    return path + u':' + QString::number(line);
}

} // namespace

TEST(Layers, EveryFolderHasItsPlaceInTheTable) {
    QSet<QString> folders;
    for (const QString &path : SourceTree().files(QStringLiteral("src"))) {
        folders << folderOf(path);
    }
    ASSERT_TRUE(folders.contains(QStringLiteral("platform")));
    for (const QString &folder : std::as_const(folders)) {
        EXPECT_TRUE(allowedFolders().contains(folder))
            << "src/" << qPrintable(folder) << " is new: say in this table what it may know";
    }
}

TEST(Layers, IncludesImportsAndLinksPointDown) {
    static const QRegularExpression kInclude(QStringLiteral(R"re(^\s*#\s*include\s*"([^"]+)")re"));
    static const QRegularExpression kImport(QStringLiteral(R"(^\s*import\s+Tallowby\.(\w+))"));
    static const QRegularExpression kLink(QStringLiteral(R"(\bTallowby::(\w+))"));
    const SourceTree tree;
    for (const QString &path : tree.files(QStringLiteral("src"))) {
        const QString folder = folderOf(path);
        for (const SourceLine &line : tree.lines(path)) {
            const QString where = place(path, line.number);
            if (const auto include = kInclude.match(line.text); include.hasMatch()) {
                const QString header = include.captured(1);
                if (header.endsWith(u".moc")) {
                    continue;
                }
                EXPECT_TRUE(tree.contains(u"src/" + header))
                    << qPrintable(where) << ": \"" << qPrintable(header) << "\" is not named from src/";
                expectAllowed(where, folder, header.section(u'/', 0, 0));
            } else if (const auto import = kImport.match(line.text); path.endsWith(u".qml") && import.hasMatch()) {
                expectAllowed(where, folder, import.captured(1).toLower());
            } else if (path.endsWith(u"CMakeLists.txt")) {
                for (auto link = kLink.globalMatch(line.text); link.hasNext();) {
                    expectAllowed(where, folder, link.next().captured(1));
                }
            }
        }
    }
}

TEST(Layers, OneOperatingSystemIsKnownInOneFolderOnly) {
    static const QRegularExpression kInclude(QStringLiteral(R"(^\s*#\s*include\s*"platform/linux/)"));
    static const QRegularExpression kSystemHeader(QStringLiteral(R"(^\s*#\s*include\s*<(xcb|X11|QDBus|xkbcommon))"));
    const SourceTree tree;
    for (const QString &path : tree.files(QStringLiteral("src"), {QStringLiteral(".h"), QStringLiteral(".cpp")})) {
        if (path.startsWith(u"src/platform/linux/")) {
            continue;
        }
        for (const SourceLine &line : tree.lines(path)) {
            EXPECT_FALSE(kInclude.match(line.text).hasMatch() || kSystemHeader.match(line.text).hasMatch())
                << qPrintable(place(path, line.number))
                << ": reach the system through an interface of platform/desktop";
        }
    }
}

} // namespace tallowby::test
