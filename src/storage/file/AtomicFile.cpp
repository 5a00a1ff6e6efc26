#include "storage/file/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowby {

namespace {

constexpr QLatin1StringView kTemporaryMark(".saving-");

/// The file itself when `path` is a link to one.
QString resolved(const QString &path) {
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? path : canonical;
}

int closeWhole(int descriptor) {
    // A close that a signal interrupts has still closed the file.
    const int result = ::close(descriptor);
    return result < 0 && errno == EINTR ? 0 : result;
}

/// Some file systems of networks and of user space cannot sync a folder. The file is in its place all the same.
bool isSyncUnsupported(int error) {
    return error == EINVAL || error == ENOTSUP;
}

} // namespace

AtomicFile::AtomicFile(const QString &target)
    : m_target(QFile::encodeName(resolved(target)))
    , m_folder(QFile::encodeName(QFileInfo(resolved(target)).absolutePath())) {}

AtomicFile::~AtomicFile() {
    discard();
}

AtomicFile::Error AtomicFile::open() {
    m_temporary = m_target + kTemporaryMark.data() + "XXXXXX";
    m_descriptor = ::mkostemp(m_temporary.data(), O_CLOEXEC); // Creates it 0600.
    if (m_descriptor < 0) {
        m_temporary.clear();
        return failure(QStringLiteral("cannot create a file beside"));
    }
    // The lock says that a living process is at work; the system takes it back when the process dies.
    ::flock(m_descriptor, LOCK_EX | LOCK_NB);
    return std::nullopt;
}

AtomicFile::Error AtomicFile::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return failure(QStringLiteral("cannot write beside"));
        }
        bytes.remove_prefix(std::size_t(count));
    }
    return std::nullopt;
}

AtomicFile::Error AtomicFile::commit() {
    struct stat status {};
    if (::fsync(m_descriptor) < 0 || ::fstat(m_descriptor, &status) < 0) {
        return failure(QStringLiteral("cannot sync the file beside"));
    }
    if (closeWhole(std::exchange(m_descriptor, -1)) < 0) {
        return failure(QStringLiteral("cannot close the file beside"));
    }
    if (std::rename(m_temporary.constData(), m_target.constData()) < 0) {
        return failure(QStringLiteral("cannot replace"));
    }
    m_temporary.clear();
    m_placed = FileIdentity(status);
    return syncFolder();
}

AtomicFile::Error AtomicFile::syncFolder() const {
    const int folder = ::open(m_folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) {
        return failure(QStringLiteral("cannot open the folder of"));
    }
    Error error;
    if (::fsync(folder) < 0 && !isSyncUnsupported(errno)) {
        error = failure(QStringLiteral("cannot sync the folder of"));
    }
    closeWhole(folder);
    return error;
}

void AtomicFile::removeLeftovers(const QString &target) {
    const QFileInfo file(resolved(target));
    const QDir folder = file.absoluteDir();
    const QStringList names = folder.entryList({file.fileName() + kTemporaryMark + u'*'}, QDir::Files | QDir::Hidden);
    for (const QString &name : names) {
        const QByteArray path = QFile::encodeName(folder.filePath(name));
        const int descriptor = ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
        if (descriptor < 0) {
            continue;
        }
        if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
            ::unlink(path.constData());
        }
        closeWhole(descriptor);
    }
}

FileProblem AtomicFile::failure(const QString &step) const {
    const int cause = errno;
    return {step + u' ' + QFile::decodeName(m_target) + u": " + qt_error_string(cause), cause};
}

void AtomicFile::discard() {
    if (m_descriptor >= 0) {
        closeWhole(std::exchange(m_descriptor, -1));
    }
    if (!m_temporary.isEmpty()) {
        ::unlink(m_temporary.constData());
        m_temporary.clear();
    }
}

} // namespace tallowby
