#pragma once

#include "storage/RecordPages.h"
#include "storage/file/BlockFileReader.h"

#include <QString>

#include <optional>
#include <variant>

namespace tallowby {

/// The block file as one store sees it. Knows what the store last read or wrote there, so that it writes nothing that
/// stands there already and never replaces what somebody else has put in its place. One thread at a time.
class BlockFile {
public:
    explicit BlockFile(QString path);

    /// Reads the file and keeps in mind that the caller knows its content.
    [[nodiscard]] BlockFileContent load(DeletedRecords deleted);
    /// The file that was loaded holds these records and no others.
    void setHeld(const RecordPages::Snapshot &records) { m_held = records; }
    /// The file that was loaded is no block file: the next write first gives it the name `name` beside its place, so
    /// that nothing of it is lost.
    void setAsideFirst(const QString &name) { m_setAsideName = name; }
    /// Reads the file that was, or still is to be, set aside. When it can be read now, it is not set aside any more,
    /// or loses the name that says so.
    [[nodiscard]] BlockFileContent loadSetAside();

    enum class Change { written, none };
    /// What came of a write: the file has the records; or somebody else has put other records there, deleted ones among
    /// them, which the caller must take in before it tries again; or it failed and what was there stays.
    using Outcome = std::variant<Change, LoadedBlocks, FileProblem>;
    /// Replaces the file whole. A file of somebody else that is no block file is kept as `.other-` and the mark, which
    /// is a time.
    [[nodiscard]] Outcome write(const RecordPages::Snapshot &records, const QString &mark);

private:
    /// Nothing when the place is free to be written to.
    [[nodiscard]] std::optional<Outcome> look(const QString &mark);
    [[nodiscard]] std::optional<FileProblem> writeRecords(const RecordPages::Snapshot &records);
    [[nodiscard]] std::optional<FileProblem> setAside();

    QString m_path;
    /// What the caller knows; none when there was no file.
    std::optional<FileIdentity> m_known;
    /// The records that stand there; none when that is not known.
    std::optional<RecordPages::Snapshot> m_held;
    std::optional<QString> m_setAsideName;
    /// Where the file went that could not be read at first.
    QString m_asidePath;
};

} // namespace tallowby
