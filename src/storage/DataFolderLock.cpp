#include "storage/DataFolderLock.h"

#include <QFile>
#include <QSysInfo>

#include <chrono>

namespace tallowby {

namespace {

/// A program that was told to end may still be writing.
constexpr std::chrono::milliseconds kPatience{1500};

} // namespace

DataFolderLock::DataFolderLock(const std::optional<QString> &folder) {
    if (folder) {
        m_path = *folder + u"/lock";
        m_file = std::make_unique<QLockFile>(m_path);
        m_file->setStaleLockTime(0); // However old: a program that waits in the background may run for months.
    }
}

DataFolderLock::Outcome DataFolderLock::take() {
    if (!m_file) {
        return Outcome::unavailable;
    }
    if (m_file->tryLock(int(kPatience.count()))) {
        QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner);
        return Outcome::taken;
    }
    return m_file->error() == QLockFile::LockFailedError ? Outcome::heldByOther : Outcome::unavailable;
}

DataFolderLock::Holder DataFolderLock::holder() const {
    Holder holder;
    QString application;
    if (m_file && m_file->getLockInfo(&holder.process, &holder.computer, &application)) {
        holder.isElsewhere = holder.computer != QSysInfo::machineHostName();
    }
    return holder;
}

DataFolderLock::Outcome DataFolderLock::takeFromElsewhere() {
    if (holder().isElsewhere) {
        m_file->removeStaleLockFile();
    }
    return take();
}

} // namespace tallowby
