#pragma once

#include "storage/file/FileIdentity.h"
#include "storage/file/FileProblem.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <string_view>

namespace tallowby {

/// Replaces a file whole or not at all: a temporary file beside it (0600), synced to the disk, takes its name, and the
/// folder is synced after that. Whatever fails, and whenever the process is killed, the old file or the new one stands
/// there, never a part of one. A symbolic link is followed, so that the link stays one. One thread at a time.
class AtomicFile {
public:
    using Error = std::optional<FileProblem>;

    explicit AtomicFile(const QString &target);
    /// Without `commit` the target stays as it was and the temporary file goes.
    ~AtomicFile();
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    [[nodiscard]] Error open();
    [[nodiscard]] Error write(std::string_view bytes);
    [[nodiscard]] Error commit();
    /// The identity of the new file once it has taken the name. After a failed `commit` there is one only if it was the
    /// folder that could not be synced.
    [[nodiscard]] const std::optional<FileIdentity> &placed() const { return m_placed; }

    /// Removes the temporary files that killed processes left beside `target`; those of a running one stay.
    static void removeLeftovers(const QString &target);

private:
    FileProblem failure(const QString &step) const;
    [[nodiscard]] Error syncFolder() const;
    void discard();

    QByteArray m_target;
    QByteArray m_folder;
    QByteArray m_temporary;
    int m_descriptor = -1;
    std::optional<FileIdentity> m_placed;
};

} // namespace tallowby
