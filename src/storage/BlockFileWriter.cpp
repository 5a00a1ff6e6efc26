#include "storage/BlockFileWriter.h"

#include "model/TimestampCoding.h"
#include "platform/Log.h"
#include "storage/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
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

} // namespace

BlockFileWriter::BlockFileWriter(QString path)
    : m_path(std::move(path)) {
    AtomicFile::removeLeftovers(m_path);
}

void BlockFileWriter::setAsideFirst(const QString &name) {
    m_setAsideName = name;
}

std::optional<QString> BlockFileWriter::write(const RecordPages::Snapshot &records) {
    makeFolder(m_path);
    if (auto error = setAside()) {
        return error;
    }
    return writeRecords(records);
}

std::optional<QString> BlockFileWriter::writeRecords(const RecordPages::Snapshot &records) {
    AtomicFile file(m_path);
    BlockRecordWriter json(kFileTimestamps);
    if (auto error = file.open()) {
        return error;
    }
    json.startArray();
    for (std::size_t place = 0; const auto &page : records) {
        for (const auto &fields : *page) {
            if (const auto refusal = json.write(*fields)) {
                return QStringLiteral("record %1: ").arg(place) + *refusal;
            }
            ++place;
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
    return file.commit();
}

std::optional<QString> BlockFileWriter::setAside() {
    if (!m_setAsideName) {
        return std::nullopt;
    }
    const QByteArray path = QFile::encodeName(m_path);
    const QDir folder = QFileInfo(m_path).absoluteDir();
    QString name = *m_setAsideName;
    for (int next = 2; !giveName(path, QFile::encodeName(folder.filePath(name))); ++next) {
        if (errno == ENOENT) {
            m_setAsideName.reset(); // Somebody took the file away: there is nothing to lose.
            return std::nullopt;
        }
        if (errno != EEXIST) {
            return QStringLiteral("cannot set aside the unreadable ") + m_path + u": " + qt_error_string(errno);
        }
        name = *m_setAsideName + u'-' + QString::number(next);
    }
    m_setAsideName.reset();
    logLine(QString(u"[BlockStorage] 🗄️ Kept the unreadable file as " + name));
    return std::nullopt;
}

} // namespace tallowby
