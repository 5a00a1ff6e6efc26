#include "media/UnusedRecordings.h"

#include "platform/ApplicationSupport.h"
#include "platform/Log.h"
#include "storage/AtomicFile.h"
#include "storage/BlockStorage.h"
#include "storage/MediaStorage.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

namespace tallowby {

namespace {

/// Longer than any list of a real folder.
constexpr qint64 kLongestList = 16LL * 1024 * 1024;

/// Whatever else lies in the folder is none of ours.
bool isRecording(const QString &name) {
    static const QRegularExpression pattern(
        QStringLiteral("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}(-feedback\\.m4a|\\.m4a|\\.mp4)$"));
    return pattern.match(name).hasMatch();
}

/// By file name, when it was first seen that nothing names it.
QJsonObject readList(const QString &path) {
    QFile file(path);
    if (!file.open(QFile::ReadOnly) || file.size() > kLongestList) {
        return {};
    }
    return QJsonDocument::fromJson(file.readAll()).object();
}

void writeList(const QString &path, const QJsonObject &list) {
    const QByteArray bytes = QJsonDocument(list).toJson(QJsonDocument::Compact);
    AtomicFile file(path);
    AtomicFile::Error error = file.open();
    if (!error) {
        error = file.write({bytes.constData(), std::size_t(bytes.size())});
    }
    if (!error) {
        error = file.commit();
    }
    if (error) {
        logLine(QString(u"[UnusedRecordings] ⚠️ " + *error));
    }
}

} // namespace

UnusedRecordings::UnusedRecordings(const BlockStorage &storage, Scheduler &scheduler)
    : m_storage(storage)
    , m_scheduler(scheduler)
    , m_call(scheduler.after(kDelay, [this] { look(); })) {}

void UnusedRecordings::look() {
    const std::optional<QString> support = applicationSupportFolder();
    const std::optional<QString> media = MediaStorage::directory();
    if (!support || !media) {
        return;
    }
    QSet<QString> named;
    for (const BlockPtr &block : m_storage.blocks()) {
        if (const std::optional<QString> name = block->mediaFileName(); name && !block->deletedAt()) {
            named.insert(*name);
        }
    }
    const QString listPath = *support + u"/unused-media.json";
    const QJsonObject before = readList(listPath);
    const QDateTime now = QDateTime::fromSecsSinceEpoch(
        std::chrono::duration_cast<std::chrono::seconds>(m_scheduler.now().time_since_epoch()).count(), Qt::UTC);
    QJsonObject after;
    int removed = 0;
    for (const QString &name : QDir(*media).entryList(QDir::Files | QDir::NoSymLinks)) {
        if (!isRecording(name) || named.contains(name)) {
            continue;
        }
        QDateTime since = QDateTime::fromString(before[name].toString(), Qt::ISODate);
        if (!since.isValid() || since > now) {
            since = now;
        }
        if (since.addDays(kGrace.count()) <= now && QFile::remove(*media + u'/' + name)) {
            ++removed;
        } else {
            after[name] = since.toString(Qt::ISODate);
        }
    }
    if (removed > 0) {
        logLine(QString(u"[UnusedRecordings] 🗑️ Removed " + QString::number(removed) +
                        u" recordings that no note has named for 30 days"));
    }
    if (after != before) {
        writeList(listPath, after);
    }
}

} // namespace tallowby
