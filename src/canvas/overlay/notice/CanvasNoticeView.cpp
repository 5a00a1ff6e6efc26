#include "canvas/overlay/notice/CanvasNoticeView.h"

#include "canvas/model/CanvasViewModel.h"

namespace tallowby {

CanvasNoticeView::CanvasNoticeView(QQuickItem *parent)
    : QQuickItem(parent) {}

void CanvasNoticeView::setCanvas(InfiniteCanvasView *canvas) {
    if (m_canvas == canvas) {
        return;
    }
    m_canvas = canvas;
    if (canvas) {
        connect(&canvas->viewModel(), &CanvasViewModel::noticeRequested, this, &CanvasNoticeView::show);
    }
    Q_EMIT canvasChanged();
}

void CanvasNoticeView::show(const QString &text) {
    m_text = text;
    Q_EMIT textChanged();
    m_hiding = m_canvas->viewModel().scheduler().after(kDuration, [this] {
        m_hiding.cancel();
        Q_EMIT isShownChanged();
    });
    Q_EMIT isShownChanged();
}

} // namespace tallowby
