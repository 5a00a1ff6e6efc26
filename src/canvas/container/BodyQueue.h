#pragma once

#include <QObject>
#include <QPointer>
#include <QRectF>

#include <vector>

class QQuickItem;

namespace tallowby {

class BlockContainerView;

/// The containers that are still without a body: those of blocks that have come near the view and not into it. Each
/// frame makes some of the bodies, so that none has to make those of a whole column of blocks while the canvas is
/// panned. Belongs to the canvas. Main thread only.
class BodyQueue : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t kBodiesPerFrame = 6;

    /// The frames are those of the view's window; without a window nothing waits.
    explicit BodyQueue(QQuickItem &view);

    void add(BlockContainerView &container);
    /// Makes the bodies of all blocks that reach into the rectangle, which is in canvas points.
    void makeWithin(const QRectF &visibleRect);

private:
    void makeSome();
    /// The first so many of the queue.
    void make(std::size_t count);

    QQuickItem &m_view;
    std::vector<QPointer<BlockContainerView>> m_waiting;
    QMetaObject::Connection m_frames;
};

} // namespace tallowby
