#include "media/UnusedRecordings.h"

#include "platform/ApplicationSupport.h"
#include "platform/Log.h"
#include "storage/BlockStorage.h"
#include "storage/DataFolderLock.h"
#include "storage/MediaStorage.h"
#include "storage/file/AtomicFile.h"

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

constexpr QLatin1StringView kSinceKey("since");
constexpr QLatin1StringView kLastDayKey("last");
constexpr QLatin1StringView kDaysKey("days");

/// For how long nothing has named a recording.
struct Sighting {
    QDateTime since;
    QDate lastDay;
    /// Different days of use.
    int days = 0;

    Sighting(const QJsonValue &kept, const QDateTime &now)
        : since(QDateTime::fromString(kept[kSinceKey].toString(), Qt::ISODate))
        , lastDay(QDate::fromString(kept[kLastDayKey].toString(), Qt::ISODate))
        , days(kept[kDaysKey].toInt()) {
        if (!since.isValid() || !lastDay.isValid() || since > now || days < 0) {
            *this = Sighting(now);
        } else if (lastDay < now.date()) {
            lastDay = now.date();
            ++days;
        }
    }
    [[nodiscard]] bool isOver(const QDateTime &now) const {
        constexpr auto kDays = UnusedRecordings::kGrace.count();
        return since.addDays(kDays) <= now && days >= kDays;
    }
    [[nodiscard]] QJsonObject kept() const {
        return {
            {kSinceKey, since.toString(Qt::ISODate)}, {kLastDayKey, lastDay.toString(Qt::ISODate)}, {kDaysKey, days}};
    }

private:
    explicit Sighting(const QDateTime &now)
        : since(now)
        , lastDay(now.date()) {}
};

/// By file name, what was seen of each that nothing names.
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
        logLine(QString(u"[UnusedRecordings] ⚠️ " + error->description));
    }
}

} // namespace

UnusedRecordings::UnusedRecordings(const BlockStorage &storage, const DataFolderLock &lock, Scheduler &scheduler)
    : m_storage(storage)
    , m_lock(lock)
    , m_scheduler(scheduler)
    , m_call(scheduler.after(kDelay, [this] { look(); })) {}

/// A file that was set aside, and another program, may name recordings that nothing here does.
bool UnusedRecordings::areAllBlocksKnown(const QString &folder) const {
    const QStringList filesKept{QStringLiteral("*.unreadable-*"), QStringLiteral("*.other-*")};
    return m_lock.isHeld() && m_storage.isComplete() &&
           QDir(folder).entryList(filesKept, QDir::AllEntries | QDir::Hidden | QDir::System).isEmpty();
}

void UnusedRecordings::look() {
    const std::optional<QString> support = applicationSupportFolder();
    const std::optional<QString> media = MediaStorage::directory();
    if (!support || !media || !areAllBlocksKnown(*support)) {
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
        const Sighting sighting(before[name], now);
        if (sighting.isOver(now) && QFile::moveToTrash(*media + u'/' + name)) {
            ++removed;
        } else {
            after[name] = sighting.kept();
        }
    }
    if (removed > 0) {
        logLine(QString(u"[UnusedRecordings] 🗑️ Moved " + QString::number(removed) +
                        u" recordings to the trash that no note has named for 30 days"));
    }
    if (after != before) {
        writeList(listPath, after);
    }
}

} // namespace tallowby
