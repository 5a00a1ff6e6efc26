#include "canvas/view/typing/CaretFollower.h"

#include "canvas/view/CanvasKeys.h"
#include "canvas/view/InfiniteCanvasView.h"

#include <QKeyEvent>
#include <QQuickWindow>

#include <algorithm>

namespace tallowby {

namespace {

/// How far [start, end] has to move to lie between `margin` and `length` - `margin`; its start counts where not all of
/// it has room.
double wayInto(double start, double end, double length, double margin) {
    return std::max(std::min(0.0, length - margin - end), margin - start);
}

} // namespace

CaretFollower::CaretFollower(InfiniteCanvasView &canvas)
    : QQuickItem(&canvas)
    , m_canvas(canvas) {}

void CaretFollower::setInput(QQuickItem *input) {
    if (m_input != input) {
        m_input = input;
        m_input->installEventFilter(this);
    }
}

void CaretFollower::itemChange(ItemChange change, const ItemChangeData &data) {
    if (change == ItemSceneChange && data.window) {
        data.window->installEventFilter(this);
    }
    QQuickItem::itemChange(change, data);
}

bool CaretFollower::eventFilter(QObject *watched, QEvent *event) {
    const bool isTyping = event->type() == QEvent::KeyPress
                              ? watched == window() && !isModifierKey(*static_cast<QKeyEvent *>(event))
                              : event->type() == QEvent::InputMethod && watched == m_input;
    if (isTyping) {
        polish();
    }
    return QQuickItem::eventFilter(watched, event);
}

void CaretFollower::updatePolish() {
    if (!m_input || !m_canvas.viewModel().isAnyBlockEditing() || m_canvas.isGestureRunning()) {
        return;
    }
    const QRectF caret = m_canvas.mapRectFromItem(m_input, m_input->property("cursorRectangle").toRectF());
    const double marginAcross = std::min(kMargin, m_canvas.width() / 4);
    const double marginDown = std::min(kMargin, m_canvas.height() / 4);
    m_canvas.jumpTo(m_canvas.offset() + QPointF(wayInto(caret.left(), caret.right(), m_canvas.width(), marginAcross),
                                                wayInto(caret.top(), caret.bottom(), m_canvas.height(), marginDown)));
}

} // namespace tallowby
