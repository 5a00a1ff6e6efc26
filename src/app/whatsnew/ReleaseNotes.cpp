#include "app/whatsnew/ReleaseNotes.h"

#include <QFile>
#include <QRegularExpression>

namespace tallowby {

QList<ReleaseNotes> parseReleaseNotes(const QByteArray &markdown) {
    static const QRegularExpression kHeading(QStringLiteral(R"(^##\s+(\S+)(?:\s+\((.*)\))?\s*$)"));
    QList<ReleaseNotes> all;
    bool isInPoint = false;
    const QStringList lines = QString::fromUtf8(markdown).split(u'\n');
    for (const QString &line : lines) {
        if (const auto heading = kHeading.match(line); heading.hasMatch()) {
            all << ReleaseNotes{heading.captured(1), heading.captured(2), {}};
            isInPoint = false;
        } else if (line.startsWith(u"- ") && !all.isEmpty()) {
            all.last().points << line.sliced(2).trimmed();
            isInPoint = true;
        } else if (line.startsWith(u"  ") && isInPoint && !line.trimmed().isEmpty()) {
            all.last().points.last() += u' ' + line.trimmed();
        } else {
            isInPoint = false;
        }
    }
    return all;
}

QList<ReleaseNotes> releaseNotes() {
    QFile file(QStringLiteral(":/tallowby/CHANGELOG.md"));
    return file.open(QIODevice::ReadOnly) ? parseReleaseNotes(file.readAll()) : QList<ReleaseNotes>();
}

} // namespace tallowby
