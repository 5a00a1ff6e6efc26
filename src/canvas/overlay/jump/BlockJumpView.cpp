#include "canvas/overlay/jump/BlockJumpView.h"

#include "platform/AppEvents.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace tallowby {

namespace {

constexpr std::chrono::milliseconds kGlide{180};

} // namespace

BlockJumpView::BlockJumpView(QQuickItem *parent)
    : QQuickItem(parent) {
    m_glide.setDuration(int(kGlide.count()));
    m_glide.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_glide, &QVariantAnimation::valueChanged, this, [this](const QVariant &offset) {
        if (m_canvas && m_glide.state() == QAbstractAnimation::Running) {
            m_canvas->jumpTo(offset.toPointF());
        }
    });
    connect(&m_glide, &QVariantAnimation::finished, this, [this] {
        if (m_canvas) {
            m_canvas->jumpTo(m_glide.endValue().toPointF());
        }
    });
}

void BlockJumpView::setCanvas(InfiniteCanvasView *canvas) {
    if (m_canvas == canvas) {
        return;
    }
    m_canvas = canvas;
    if (canvas) {
        connect(canvas, &InfiniteCanvasView::viewportChanged, this, &BlockJumpView::frameChanged);
        // Whoever takes hold of the paper has it.
        connect(canvas, &InfiniteCanvasView::isGestureRunningChanged, &m_glide, &QAbstractAnimation::stop);
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
    glideTo(place);
    Q_EMIT frameChanged();
    if (m_block) {
        Q_EMIT pulse();
    }
}

void BlockJumpView::glideTo(QPointF canvasPoint) {
    m_glide.stop();
    const QPointF goal = -m_canvas->zoom() * canvasPoint;
    if (reducesMotion()) {
        m_canvas->jumpTo(goal);
        return;
    }
    // From far away only the last stretch is shown: nothing could be seen of the rest, and all of it would be drawn.
    const QPointF way = goal - m_canvas->offset();
    const double longest = std::max(1.0, std::hypot(width(), height()));
    const double length = std::hypot(way.x(), way.y());
    m_glide.setStartValue(length > longest ? goal - way * (longest / length) : m_canvas->offset());
    m_glide.setEndValue(goal);
    m_glide.start();
}

} // namespace tallowby
