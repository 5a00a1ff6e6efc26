#pragma once

#include "canvas/container/BlockBody.h"
#include "canvas/drawing/PathDrawing.h"

#include <optional>

namespace tallowby {

class PathDrawingItem;

/// The body of a sketch: its strokes, smoothed. Their points are on the canvas, not in the block: a drag takes along
/// what is drawn before it changes them, and a resize leaves them where they are.
class SketchBlockContent : public tallowby::BlockBody {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit SketchBlockContent(QQuickItem *parent = nullptr);

    /// Seen from the block's top left corner.
    [[nodiscard]] static PathDrawing drawing(const Block &block);

    void setZoom(double zoom) override;
    void settleZoom() override;

protected:
    void componentComplete() override;
    void updatePolish() override;

private:
    void redraw();

    /// Owned as a child.
    PathDrawingItem *m_strokes;
    /// From which payload the strokes were drawn.
    std::optional<QByteArray> m_drawnContent;
    /// Where the block was then.
    QPointF m_drawnPlace;
};

} // namespace tallowby
