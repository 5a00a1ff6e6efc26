#pragma once

#include <QObject>

#include <functional>

class QQuickItem;

namespace tallowby {

/// Work that is done in parts, one before each frame of a view's window, so that no frame waits for all of it. Belongs
/// to the view. Main thread only.
class FrameWork : public QObject {
    Q_OBJECT

public:
    /// `part` does some of the work and says whether any is left.
    FrameWork(QQuickItem &view, std::function<bool()> part);

    /// There is work, beginning with the next frame. Without a window it is all done at once.
    void begin();

private:
    void doPart();
    void stop();

    QQuickItem &m_view;
    const std::function<bool()> m_part;
    QMetaObject::Connection m_frames;
};

} // namespace tallowby
