#pragma once

#include <QImage>
#include <QObject>

#include <memory>
#include <mutex>

namespace tallowby {

/// The pictures of a camera or a film: the newest one, whoever looks. Pictures come from any thread and are told of on
/// the main thread, where nobody is told twice before having looked.
class VideoFrames : public QObject {
    Q_OBJECT

public:
    /// Any thread: a camera is opened on a thread of its own, and what comes of it is shown on the main thread.
    [[nodiscard]] static std::shared_ptr<VideoFrames> make();

    /// Any thread. The picture's pixels are shared, not copied.
    void push(const QImage &picture);
    /// Main thread, or the one that draws. Null before the first.
    [[nodiscard]] QImage newest();

Q_SIGNALS:
    void changed();

private:
    VideoFrames() = default;

    std::mutex m_mutex;
    QImage m_newest;
    bool m_isTold = false;
};

} // namespace tallowby
