#include "storage/SaveStatus.h"

#include <cerrno>

namespace tallowby {

namespace {

QString plainWords(const FileProblem &problem) {
    switch (problem.cause) {
    case ENOSPC:
        return SaveStatus::tr("the disk is full");
    case EDQUOT:
        return SaveStatus::tr("your share of the disk is used up");
    case EFBIG:
        return SaveStatus::tr("the file has grown too large");
    case EROFS:
        return SaveStatus::tr("the disk is read-only");
    case EACCES:
    case EPERM:
        return SaveStatus::tr("access to the folder is denied");
    case EIO:
        return SaveStatus::tr("the disk reports an error");
    case ENOENT:
    case ENOTDIR:
    case ESTALE:
    case ENODEV:
    case ENXIO:
    case ENOTCONN:
    case ETIMEDOUT:
    case EHOSTDOWN:
    case EHOSTUNREACH:
        return SaveStatus::tr("the folder cannot be reached");
    case EMFILE:
    case ENFILE:
        return SaveStatus::tr("too many files are open");
    case 0:
        return problem.description;
    default:
        return qt_error_string(problem.cause);
    }
}

QString reasonOf(const std::optional<FileProblem> &problem) {
    return problem ? plainWords(*problem) : QString();
}

} // namespace

SaveStatus::State SaveStatus::state() const {
    return !m_saveReason.isEmpty()   ? State::notSaved
           : !m_readReason.isEmpty() ? State::notRead
           : !m_keptAs.isEmpty()     ? State::keptAside
                                     : State::good;
}

QString SaveStatus::text() const {
    switch (state()) {
    case State::notSaved:
        return tr("Notes cannot be saved: %1. Trying again…").arg(m_saveReason);
    case State::notRead:
        return tr("Notes cannot be read: %1. Trying again…").arg(m_readReason);
    case State::keptAside:
        return tr("Your notes could not be read; they are kept as %1").arg(m_keptAs);
    case State::good:
        break;
    }
    return {};
}

void SaveStatus::setSaveProblem(const std::optional<FileProblem> &problem) {
    set(m_saveReason, reasonOf(problem));
}

void SaveStatus::setReadProblem(const std::optional<FileProblem> &problem) {
    set(m_readReason, reasonOf(problem));
}

void SaveStatus::setKeptAs(const QString &name) {
    set(m_keptAs, name);
}

void SaveStatus::set(QString &reason, const QString &value) {
    if (reason != value) {
        reason = value;
        Q_EMIT changed();
    }
}

} // namespace tallowby
