#pragma once

#include "storage/file/FileProblem.h"

#include <QObject>

#include <optional>

namespace tallowby {

/// How it stands between the notes in memory and their file, in words for the user. Main thread only.
class SaveStatus : public QObject {
    Q_OBJECT

public:
    enum class State {
        good,
        notSaved, ///< the last write failed; it is tried again
        notRead,  ///< the file could not be reached yet; it is tried again, and nothing is written meanwhile
        keptAside ///< the file is no block file and is kept under another name
    };

    using QObject::QObject;

    /// The most urgent of what holds.
    [[nodiscard]] State state() const;
    /// One sentence; empty while all is well.
    [[nodiscard]] QString text() const;
    /// The name of the file that could not be read; empty when there is none.
    [[nodiscard]] const QString &keptAs() const { return m_keptAs; }

    void setSaveProblem(const std::optional<FileProblem> &problem);
    void setReadProblem(const std::optional<FileProblem> &problem);
    void setKeptAs(const QString &name);

Q_SIGNALS:
    void changed();

private:
    void set(QString &reason, const QString &value);

    /// In plain words; empty for none.
    QString m_saveReason;
    QString m_readReason;
    QString m_keptAs;
};

} // namespace tallowby
