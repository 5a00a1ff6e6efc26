#include "platform/desktop/VideoFrames.h"

#include <utility>

namespace tallowby {

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
