#include "canvas/view/WholeRepaint.h"

#include "platform/scene/SceneGraph.h"

#include <QSGRenderNode>

namespace tallowby {

namespace {

class UnseenNode final : public QSGRenderNode {
public:
    explicit UnseenNode(const QRectF &rect)
        : m_rect(rect) {}

    void render(const RenderState *) override {}
    [[nodiscard]] StateFlags changedStates() const override { return {}; }
    [[nodiscard]] RenderingFlags flags() const override { return BoundedRectRendering; }
    [[nodiscard]] QRectF rect() const override { return m_rect; }

private:
    const QRectF m_rect;
};

} // namespace

WholeRepaint::WholeRepaint(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void WholeRepaint::setCanvas(InfiniteCanvasView *canvas) {
    if (m_canvas != canvas) {
        m_canvas = canvas;
        connect(canvas, &InfiniteCanvasView::viewportChanged, this, &QQuickItem::update);
        Q_EMIT canvasChanged();
    }
}

QSGNode *WholeRepaint::updatePaintNode(QSGNode *old, UpdatePaintNodeData *) {
    // Where a node goes is to be painted from that moment on, before blocks that come and go in the same frame are
    // looked at; what only changes is looked at after them.
    delete old;
    return sceneGraphHasShaders() || size().isEmpty() ? nullptr : new UnseenNode({{0, 0}, size()});
}

} // namespace tallowby
