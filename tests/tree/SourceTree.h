#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace tallowby::test {

/// One line of a text file, counted from 1.
struct SourceLine {
    int number = 0;
    QString text;
};

/// The files of this repository as they lie on disk, without what a build, a run or git leaves beside them.
class SourceTree {
public:
    SourceTree();

    /// Paths from the root, with `/`, sorted; those under `folder` with one of the endings, or all.
    [[nodiscard]] QStringList files(const QString &folder = {}, const QStringList &endings = {}) const;
    [[nodiscard]] std::vector<SourceLine> lines(const QString &path) const;
    [[nodiscard]] QString text(const QString &path) const;
    /// Whether a file or a folder stands at this path.
    [[nodiscard]] bool contains(const QString &path) const;

private:
    QString m_root;
    QStringList m_files;
};

} // namespace tallowby::test
