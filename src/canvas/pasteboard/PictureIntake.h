#pragma once

#include "storage/PictureQueue.h"

#include <QByteArray>
#include <QSize>
#include <QString>
#include <QUrl>

#include <deque>
#include <functional>
#include <variant>
#include <vector>

namespace tallowby {

/// The bytes of what may be a picture, or the file that has them.
using PictureSource = std::variant<QByteArray, QUrl>;

struct RefusedSource {
    /// The file's name; empty for bytes.
    QString name;
    /// For people, to go after a colon.
    QString reason;
    /// False for something that is a picture, but cannot be taken.
    bool isOtherContent = false;
};

struct PictureFinding {
    /// The bytes of the first source that is a picture; empty when none is.
    QByteArray file;
    QSize size;
    /// The sources before that one.
    std::vector<RefusedSource> refused;
};

/// Reads and looks at pictures that are put on the canvas, away from the main thread. What was asked for first comes
/// first. Main thread only.
class PictureIntake {
public:
    using Done = std::function<void(const PictureFinding &)>;

    explicit PictureIntake(PictureQueue &queue);

    /// Looks for the first source that is a picture. `done` is not called any more once this object has gone.
    void look(std::vector<PictureSource> sources, Done done);

private:
    struct Job {
        std::vector<PictureSource> sources;
        Done done;
    };

    void lookAtNext();

    PictureQueue &m_queue;
    /// The first is being looked at.
    std::deque<Job> m_jobs;
    PictureTask m_task;
};

} // namespace tallowby
