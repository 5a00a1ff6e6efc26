#pragma once

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
    /// An error is a text that names the step, the file and the cause.
    using Error = std::optional<QString>;

    explicit AtomicFile(const QString &target);
    /// Without `commit` the target stays as it was and the temporary file goes.
    ~AtomicFile();
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    [[nodiscard]] Error open();
    [[nodiscard]] Error write(std::string_view bytes);
    /// After an error the target may be the new file only if it was the folder that could not be synced.
    [[nodiscard]] Error commit();

    /// Removes the temporary files that killed processes left beside `target`; those of a running one stay.
    static void removeLeftovers(const QString &target);

private:
    Error failure(const QString &step) const;
    void discard();

    QByteArray m_target;
    QByteArray m_folder;
    QByteArray m_temporary;
    int m_descriptor = -1;
};

} // namespace tallowby
