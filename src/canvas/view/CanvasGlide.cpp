#include "canvas/view/CanvasGlide.h"

#include "canvas/view/InfiniteCanvasView.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace tallowby {

namespace {

constexpr std::chrono::milliseconds kDuration{180};

} // namespace

CanvasGlide::CanvasGlide(QObject *parent)
    : QObject(parent) {
    m_animation.setDuration(int(kDuration.count()));
    m_animation.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_animation, &QVariantAnimation::valueChanged, this, [this](const QVariant &offset) {
        if (m_canvas && m_animation.state() == QAbstractAnimation::Running) {
            m_canvas->jumpTo(offset.toPointF());
        }
    });
    connect(&m_animation, &QVariantAnimation::finished, this, [this] {
        if (m_canvas) {
            m_canvas->jumpTo(m_animation.endValue().toPointF());
        }
    });
}

void CanvasGlide::setCanvas(InfiniteCanvasView *canvas) {
    m_canvas = canvas;
    if (canvas) {
        connect(canvas, &InfiniteCanvasView::isGestureRunningChanged, &m_animation, &QAbstractAnimation::stop);
    }
}

void CanvasGlide::glideTo(QPointF offset) {
    m_animation.stop();
    if (m_canvas->prefersReducedMotion()) {
        m_canvas->jumpTo(offset);
        return;
    }
    // From far away only the last stretch is shown: nothing could be seen of the rest, and all of it would be drawn.
    const QPointF way = offset - m_canvas->offset();
    const double longest = std::max(1.0, std::hypot(m_canvas->width(), m_canvas->height()));
    const double length = std::hypot(way.x(), way.y());
    m_animation.setStartValue(length > longest ? offset - way * (longest / length) : m_canvas->offset());
    m_animation.setEndValue(offset);
    m_animation.start();
}

} // namespace tallowby
