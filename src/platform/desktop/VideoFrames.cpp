#include "platform/desktop/VideoFrames.h"

#include <QCoreApplication>
#include <QThread>

#include <utility>

namespace tallowby {

std::shared_ptr<VideoFrames> VideoFrames::make() {
    // Whichever thread lets go of it last, it ends where its signals are.
    const auto end = [](VideoFrames *last) {
        if (last->thread() == QThread::currentThread()) {
            delete last;
        } else {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [last] { delete last; }, Qt::QueuedConnection);
        }
    };
    const std::shared_ptr<VideoFrames> frames(new VideoFrames, end);
    frames->moveToThread(QCoreApplication::instance()->thread());
    return frames;
}

void VideoFrames::push(const QImage &picture) {
    // The old picture goes when the lock is gone: its end may call back into whatever made it.
    QImage old = picture;
    const std::lock_guard lock(m_mutex);
    std::swap(m_newest, old);
    if (!std::exchange(m_isTold, true)) {
        QMetaObject::invokeMethod(this, &VideoFrames::changed, Qt::QueuedConnection);
    }
}

QImage VideoFrames::newest() {
    const std::lock_guard lock(m_mutex);
    m_isTold = false;
    return m_newest;
}

} // namespace tallowby
