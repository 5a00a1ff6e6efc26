#include "canvas/container/SelectionChromeView.h"

#include "canvas/model/BlockGeometry.h"

namespace tallowby {

void SelectionChromeView::setCanvas(InfiniteCanvasView *canvas) {
    if (m_canvas != canvas) {
        m_canvas = canvas;
        Q_EMIT canvasChanged();
    }
}

void SelectionChromeView::componentComplete() {
    QQuickItem::componentComplete();
    const CanvasViewModel &model = m_canvas->viewModel();
    // However many of these come in one turn of the event loop, it is worked out once.
    connect(m_canvas, &InfiniteCanvasView::viewportChanged, this, &QQuickItem::polish);
    connect(m_canvas, &InfiniteCanvasView::selectionMoved, this, &QQuickItem::polish);
    connect(&model, &CanvasViewModel::framesChanged, this, &QQuickItem::polish);
    connect(&model, &CanvasViewModel::selectionChanged, this, &QQuickItem::polish);
    connect(&model, &CanvasViewModel::activeToolChanged, this, &QQuickItem::polish);
    connect(&model, &CanvasViewModel::focusedBlockIdChanged, this, &QQuickItem::polish);
    polish();
}

bool SelectionChromeView::isAnythingShown() const {
    return m_layout || !m_groupFrame.isEmpty();
}

void SelectionChromeView::updatePolish() {
    const bool wasAnythingShown = isAnythingShown();
    m_layout = m_canvas->handles();
    m_angle = m_layout ? m_canvas->viewModel().selectedBlocks().front()->rotation() : 0;
    m_groupFrame = frameOfGroup();
    // Nothing on every frame of a pan over an unselected canvas.
    if (wasAnythingShown || isAnythingShown()) {
        Q_EMIT changed();
    }
}

QPointF SelectionChromeView::middleOf(BlockHandle handle) const {
    return m_layout ? m_layout->middleOf(handle) : QPointF();
}

QRectF SelectionChromeView::frameOfGroup() const {
    const auto &selected = m_canvas->viewModel().selectedBlocks();
    if (selected.size() < 2) {
        return {};
    }
    QRectF bounds;
    for (const BlockPtr &block : selected) {
        bounds |= boundsOf(*block);
    }
    bounds.translate(m_canvas->dragOffset());
    const Viewport &viewport = m_canvas->viewport();
    constexpr double kGap = 2 * HandleLayout::kOutlineGap;
    return QRectF(viewport.toScreen(bounds.topLeft()), bounds.size() * viewport.scale())
        .adjusted(-kGap, -kGap, kGap, kGap);
}

} // namespace tallowby
