#pragma once

#include <QByteArray>
#include <QList>
#include <QQmlEngine>
#include <QString>
#include <QStringList>

namespace tallowby {

/// What came with one version.
struct ReleaseNotes {
    Q_GADGET
    QML_VALUE_TYPE(releaseNotes)
    Q_PROPERTY(QString version MEMBER version)
    Q_PROPERTY(QString remark MEMBER remark)
    Q_PROPERTY(QStringList points MEMBER points)

public:
    QString version;
    /// What the heading says of it in brackets, for example its day.
    QString remark;
    /// One a change, with Markdown inside.
    QStringList points;

    bool operator==(const ReleaseNotes &) const = default;
};

/// Reads a list of changes: a heading of the second level a version, a list item a change. Lines of other kinds are
/// passed over.
[[nodiscard]] QList<ReleaseNotes> parseReleaseNotes(const QByteArray &markdown);

/// The program's own.
[[nodiscard]] QList<ReleaseNotes> releaseNotes();

} // namespace tallowby
