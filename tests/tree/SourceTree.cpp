#include "tree/SourceTree.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace tallowby::test {

namespace {

bool isOurs(const QString &path) {
    static const QStringList kLeftovers{QStringLiteral("build/"), QStringLiteral(".git/"), QStringLiteral(".cache/"),
                                        QStringLiteral("screenshots/")};
    return path != u".git" &&
           std::ranges::none_of(kLeftovers, [&path](const QString &folder) { return path.startsWith(folder); });
}

} // namespace

SourceTree::SourceTree()
    : m_root(QStringLiteral(TALLOWBY_SOURCE_FOLDER)) {
    const QDir root(m_root);
    QDirIterator iterator(m_root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        const QString path = root.relativeFilePath(iterator.next());
        if (isOurs(path)) {
            m_files << path;
        }
    }
    m_files.sort();
}

QStringList SourceTree::files(const QString &folder, const QStringList &endings) const {
    QStringList found;
    std::ranges::copy_if(m_files, std::back_inserter(found), [&](const QString &path) {
        const auto endsWith = [&path](const QString &ending) { return path.endsWith(ending); };
        return (folder.isEmpty() || path.startsWith(folder + u'/')) &&
               (endings.isEmpty() || std::ranges::any_of(endings, endsWith));
    });
    return found;
}

QString SourceTree::text(const QString &path) const {
    QFile file(m_root + u'/' + path);
    return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

std::vector<SourceLine> SourceTree::lines(const QString &path) const {
    std::vector<SourceLine> lines;
    for (const QString &line : text(path).split(u'\n')) {
        lines.push_back({int(lines.size()) + 1, line});
    }
    return lines;
}

bool SourceTree::contains(const QString &path) const {
    return QFileInfo::exists(m_root + u'/' + path);
}

} // namespace tallowby::test
