#include "storage/file/BlockFile.h"

#include "model/BlockRecordWriter.h"
#include "model/TimestampCoding.h"
#include "platform/Log.h"
#include "storage/file/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowby {

namespace {

/// So much text is gathered before it goes to the file: the whole of it never stands in memory.
constexpr std::size_t kChunkSize = std::size_t{1} << 20;

/// Makes the folder of the file, private to the user from its first moment.
void makeFolder(const QString &path) {
    const QDir folder = QFileInfo(path).absoluteDir();
    if (!folder.exists()) {
        QDir().mkpath(QFileInfo(folder.absolutePath()).absolutePath());
        QDir().mkdir(folder.absolutePath(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

bool moveWithoutReplacing(const char *path, const char *name) {
    if (::renameat2(AT_FDCWD, path, AT_FDCWD, name, RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL) {
        return false;
    }
    // The file system cannot check by itself.
    if (::access(name, F_OK) == 0) {
        errno = EEXIST;
        return false;
    }
    return errno == ENOENT && std::rename(path, name) == 0;
}

/// One more name for the file where the file system has that, so that it is there under one of them at any instant;
/// else the other name. Never takes the place of a file that has the name already. Behind a symbolic link it is the
/// file that is meant: a second link would lead to whatever is written there next.
bool giveName(const QByteArray &path, const QByteArray &name) {
    if (::linkat(AT_FDCWD, path.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) == 0) {
        return true;
    }
    return errno != EEXIST && moveWithoutReplacing(path.constData(), name.constData());
}

double finite(double number) {
    return std::isfinite(number) ? number : 0;
}

bool isFinite(const BlockFields &fields) {
    const auto areFinite = [](auto... numbers) { return (std::isfinite(numbers) && ...); };
    const auto isTime = [](const std::optional<Timestamp> &time) {
        return !time || std::isfinite(time->secondsSinceReference);
    };
    return areFinite(fields.xPosition, fields.yPosition, fields.width, fields.height, fields.fontSize,
                     fields.rotation) &&
           isTime(fields.createdAt) && isTime(fields.updatedAt) && isTime(fields.dueDate) && isTime(fields.syncedAt) &&
           isTime(fields.deletedAt) &&
           (!fields.embedding || std::ranges::all_of(*fields.embedding, [](float n) { return std::isfinite(n); }));
}

/// The same with 0 in the place of each number that no record can carry: one such number must not cost the rest of the
/// block, let alone all others.
SharedBlockFields finiteCopy(const BlockFields &fields) {
    SharedBlockFields copy(new BlockFields(fields));
    for (double BlockFields::*number : {&BlockFields::xPosition, &BlockFields::yPosition, &BlockFields::width,
                                        &BlockFields::height, &BlockFields::fontSize, &BlockFields::rotation}) {
        copy.data()->*number = finite(fields.*number);
    }
    for (Timestamp BlockFields::*time : {&BlockFields::createdAt, &BlockFields::updatedAt}) {
        (copy.data()->*time).secondsSinceReference = finite((fields.*time).secondsSinceReference);
    }
    for (std::optional<Timestamp> BlockFields::*time :
         {&BlockFields::dueDate, &BlockFields::syncedAt, &BlockFields::deletedAt}) {
        if (std::optional<Timestamp> &value = copy.data()->*time) {
            value->secondsSinceReference = finite(value->secondsSinceReference);
        }
    }
    if (copy->embedding) {
        std::ranges::replace_if(
            *copy->embedding, [](float number) { return !std::isfinite(number); }, 0.0F);
    }
    return copy;
}

/// Whether two snapshots give the same file. Fields that no record carries may differ, and a value may have been
/// changed and changed back: what counts is the text.
bool isSameText(const RecordPages::Snapshot &before, const RecordPages::Snapshot &after) {
    BlockRecordWriter first(kFileTimestamps);
    BlockRecordWriter second(kFileTimestamps);
    first.startArray();
    second.startArray();
    const auto isSameRecord = [&](const SharedBlockFields &left, const SharedBlockFields &right) {
        if (left.constData() == right.constData()) {
            return true;
        }
        const bool isWritten = !first.write(*left) && !second.write(*right);
        const bool isSame = isWritten && first.text() == second.text();
        first.clearText();
        second.clearText();
        return isSame;
    };
    return std::ranges::equal(before, after, [&](const auto &left, const auto &right) {
        return left == right || std::ranges::equal(*left, *right, isSameRecord);
    });
}

FileProblem failure(const QString &step) {
    const int cause = errno;
    return {step + u": " + qt_error_string(cause), cause};
}

} // namespace

BlockFile::BlockFile(QString path)
    : m_path(std::move(path)) {
    AtomicFile::removeLeftovers(m_path);
}

BlockFileContent BlockFile::load(DeletedRecords deleted) {
    BlockFileContent content = readBlockFile(m_path, deleted);
    m_held.reset();
    if (const auto *loaded = std::get_if<LoadedBlocks>(&content)) {
        m_known = loaded->identity;
    } else if (const auto *unreadable = std::get_if<UnreadableBlockFile>(&content)) {
        m_known = unreadable->identity;
    } else {
        m_known.reset();
    }
    return content;
}

BlockFileContent BlockFile::loadSetAside() {
    if (m_setAsideName) {
        BlockFileContent content = load(DeletedRecords::leaveOut);
        if (std::holds_alternative<LoadedBlocks>(content)) {
            m_setAsideName.reset();
        }
        return content;
    }
    BlockFileContent content = readBlockFile(m_asidePath, DeletedRecords::leaveOut);
    if (std::holds_alternative<LoadedBlocks>(content)) {
        QString name = m_asidePath;
        name.replace(u".unreadable-"_qs, u".read-"_qs);
        QFile::rename(m_asidePath, name);
    }
    return content;
}

BlockFile::Outcome BlockFile::write(const RecordPages::Snapshot &records, const QString &mark) {
    makeFolder(m_path);
    if (auto outcome = look(mark)) {
        return *std::move(outcome);
    }
    if (m_known && m_held && isSameText(*m_held, records)) {
        return Change::none;
    }
    if (auto problem = setAside()) {
        return *std::move(problem);
    }
    if (auto problem = writeRecords(records)) {
        return *std::move(problem);
    }
    m_held = records;
    return Change::written;
}

std::optional<BlockFile::Outcome> BlockFile::look(const QString &mark) {
    struct stat status {};
    if (::stat(QFile::encodeName(m_path).constData(), &status) < 0) {
        // Without its folder there is no file either; what is wrong with the folder shows when it is written to.
        if (errno != ENOENT && errno != ENOTDIR) {
            return failure(u"cannot look at "_qs + m_path);
        }
        m_known.reset();
        m_setAsideName.reset(); // Somebody took the file away: there is nothing to lose.
        return std::nullopt;
    }
    if (m_known == FileIdentity(status)) {
        return std::nullopt;
    }
    BlockFileContent content = readBlockFile(m_path, DeletedRecords::keep);
    if (auto *problem = std::get_if<FileProblem>(&content)) {
        return std::move(*problem);
    }
    m_held.reset();
    if (auto *loaded = std::get_if<LoadedBlocks>(&content)) {
        m_known = loaded->identity;
        m_setAsideName.reset();
        return std::move(*loaded);
    }
    if (const auto *unreadable = std::get_if<UnreadableBlockFile>(&content)) {
        m_known = unreadable->identity;
        if (!m_setAsideName) {
            m_setAsideName = QFileInfo(m_path).fileName() + u".other-" + mark;
        }
    }
    return std::nullopt;
}

std::optional<FileProblem> BlockFile::writeRecords(const RecordPages::Snapshot &records) {
    AtomicFile file(m_path);
    BlockRecordWriter json(kFileTimestamps);
    if (auto error = file.open()) {
        return error;
    }
    json.startArray();
    for (const auto &page : records) {
        for (const auto &fields : *page) {
            if (const auto refusal = json.write(isFinite(*fields) ? *fields : *finiteCopy(*fields))) {
                return FileProblem{u"a record cannot be written: "_qs + *refusal};
            }
            if (json.text().size() >= kChunkSize) {
                if (auto error = file.write(json.text())) {
                    return error;
                }
                json.clearText();
            }
        }
    }
    json.endArray();
    if (auto error = file.write(json.text())) {
        return error;
    }
    auto error = file.commit();
    if (file.placed()) {
        m_known = file.placed();
        m_held.reset();
    }
    return error;
}

std::optional<FileProblem> BlockFile::setAside() {
    if (!m_setAsideName) {
        return std::nullopt;
    }
    const QByteArray path = QFile::encodeName(m_path);
    const QDir folder = QFileInfo(m_path).absoluteDir();
    QString name = *m_setAsideName;
    for (int next = 2; !giveName(path, QFile::encodeName(folder.filePath(name))); ++next) {
        if (errno == ENOENT) {
            m_setAsideName.reset(); // It has gone since it was looked at.
            return std::nullopt;
        }
        if (errno != EEXIST) {
            return failure(u"cannot set aside the unreadable "_qs + m_path);
        }
        name = *m_setAsideName + u'-' + QString::number(next);
    }
    m_setAsideName.reset();
    if (m_asidePath.isEmpty()) {
        m_asidePath = folder.filePath(name);
    }
    logLine(QString(u"[BlockStorage] 🗄️ Kept the unreadable file as " + name));
    return std::nullopt;
}

} // namespace tallowby
