#pragma once

#include "model/BlockRecordWriter.h"
#include "storage/RecordPages.h"

#include <QString>

#include <optional>

namespace tallowby {

/// Writes snapshots to the block file. Lives on the save queue.
class BlockFileWriter {
public:
    explicit BlockFileWriter(QString path);

    /// The file that stands there could not be read: the next write first gives it the name `name` beside its place, so
    /// that nothing of it is lost.
    void setAsideFirst(const QString &name);
    /// Replaces the file whole; on an error, which is returned, what was there stays.
    [[nodiscard]] std::optional<QString> write(const RecordPages::Snapshot &records);

private:
    [[nodiscard]] std::optional<QString> writeRecords(const RecordPages::Snapshot &records);
    [[nodiscard]] std::optional<QString> setAside();

    QString m_path;
    std::optional<QString> m_setAsideName;
};

} // namespace tallowby
