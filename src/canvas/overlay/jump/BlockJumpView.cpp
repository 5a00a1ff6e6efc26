#include "canvas/overlay/jump/BlockJumpView.h"

#include "platform/AppEvents.h"

#include <algorithm>
#include <cmath>

namespace tallowby {

BlockJumpView::BlockJumpView(QQuickItem *parent)
    : QQuickItem(parent) {}

void BlockJumpView::setCanvas(InfiniteCanvasView *canvas) {
    if (m_canvas == canvas) {
        return;
    }
    m_canvas = canvas;
    m_glide.setCanvas(canvas);
    if (canvas) {
        connect(canvas, &InfiniteCanvasView::viewportChanged, this, &BlockJumpView::frameChanged);
        m_jumps = canvas->notifications().observe(
            events::jumpToBlock, [this](const Notification &notification) { jump(notification.userInfo); });
    }
    Q_EMIT canvasChanged();
}

QRectF BlockJumpView::frame() const {
    if (!m_canvas || !m_block) {
        return {};
    }
    return {m_canvas->viewport().toScreen({m_block->xPosition(), m_block->yPosition()}),
            QSizeF(m_block->width(), m_block->height()) * m_canvas->zoom()};
}

void BlockJumpView::jump(const QVariantMap &target) {
    bool isX = false;
    bool isY = false;
    QPointF place(target.value(events::jumpXKey).toDouble(&isX), target.value(events::jumpYKey).toDouble(&isY));
    if (!m_canvas || !isX || !isY || !std::isfinite(place.x()) || !std::isfinite(place.y())) {
        return;
    }
    CanvasViewModel &model = m_canvas->viewModel();
    model.endEditing();
    const QUuid id = target.value(events::jumpIdKey).toUuid();
    const auto found = std::ranges::find(model.blocks(), id, [](const BlockPtr &block) { return block->id(); });
    m_block = found == model.blocks().end() ? nullptr : *found;
    if (m_block) {
        place = QRectF(m_block->xPosition(), m_block->yPosition(), m_block->width(), m_block->height()).center();
        model.setActiveTool(CanvasTool::Kind::select);
        model.selectOnly(m_block);
    } else {
        model.deselectAll();
    }
    m_glide.glideTo(-m_canvas->zoom() * place);
    Q_EMIT frameChanged();
    if (m_block) {
        Q_EMIT pulse();
    }
}

} // namespace tallowby
