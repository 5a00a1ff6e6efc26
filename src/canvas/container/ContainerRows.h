#pragma once

#include "canvas/model/VisibleBlocksModel.h"
#include "platform/scene/FrameWork.h"

#include <QObject>
#include <QRectF>

#include <vector>

namespace tallowby {

class InfiniteCanvasView;

/// The blocks that have a container: the visible blocks of the model, but those that have only come near the view, and
/// not into it, a few more with each frame. So no frame has to make the containers of whole columns of blocks while the
/// canvas is panned. Belongs to the canvas. Main thread only.
class ContainerRows : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t kRowsPerFrame = 5;

    /// The frames are those of the view's window; without a window nothing waits.
    explicit ContainerRows(InfiniteCanvasView &view);

    /// In paint order, as the visible blocks are.
    [[nodiscard]] VisibleBlocksModel *model() { return &m_rows; }
    /// The visible blocks have changed, or which of them is edited.
    void update();
    /// The view shows another part of the canvas.
    void viewMoved();

private:
    /// Whether any are left.
    bool takeMore();
    /// Takes in all blocks that are needed now, and so many of the others.
    void take(std::size_t others);
    [[nodiscard]] bool isNeeded(const Block &block) const;

    InfiniteCanvasView &m_view;
    VisibleBlocksModel m_rows;
    std::vector<BlockPtr> m_waiting;
    bool m_isTaking = false;
    bool m_isOutdated = false;
    FrameWork m_frames;
};

} // namespace tallowby
