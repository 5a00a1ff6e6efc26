#pragma once

#include <QLockFile>
#include <QString>

#include <memory>
#include <optional>

namespace tallowby {

/// Makes this process the only one on a data folder, whatever session, bus or computer the others belong to: a lock
/// file in the folder for the life of this object. The lock of a process that has died counts for nothing, unless it
/// ran on another computer, where nobody here can look. Main thread only.
class DataFolderLock {
public:
    enum class Outcome {
        taken,
        heldByOther,
        unavailable ///< no lock file can be made there, so nobody can have one either
    };

    explicit DataFolderLock(const std::optional<QString> &folder);

    /// Gives another process a moment to end.
    [[nodiscard]] Outcome take();
    [[nodiscard]] bool isHeld() const { return m_file && m_file->isLocked(); }

    /// After `heldByOther`.
    struct Holder {
        qint64 process = 0;
        QString computer;
        bool isElsewhere = false;
    };
    [[nodiscard]] Holder holder() const;
    /// Takes the lock away from a process on another computer, which the user knows to have ended.
    [[nodiscard]] Outcome takeFromElsewhere();

private:
    QString m_path;
    std::unique_ptr<QLockFile> m_file;
};

} // namespace tallowby
