#include "canvas/drawing/SoftwarePathNode.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// Of the scale, that the picture counts as fitting: far less than a pixel over the whole screen.
constexpr double kScaleTolerance = 1e-5;

/// In screen points. The rasteriser does not come to an end with outlines that are far longer than the screen.
constexpr double kLongestPainted = 20'000;

bool fits(const QTransform &toDevice, double scale) {
    const auto isScale = [scale](double factor) { return std::abs(factor / scale - 1) < kScaleTolerance; };
    return toDevice.type() <= QTransform::TxScale && isScale(toDevice.m11()) && isScale(toDevice.m22());
}

} // namespace

void SoftwarePathNode::show(const PathDrawing &drawing, std::shared_ptr<const PathPicture> picture) {
    m_drawing = drawing;
    m_picture = std::move(picture);
    // The renderer rounds it to whole points, and at a small zoom a pixel's edge is several points wide.
    const QRectF rect(m_drawing.bounds().adjusted(-4, -4, 4, 4).toAlignedRect());
    if (m_rect != rect) {
        m_rect = rect;
        markDirty(DirtyGeometry);
    }
    markDirty(DirtyMaterial);
}

void SoftwarePathNode::render(const RenderState *state) {
    auto *painter = static_cast<QPainter *>(
        m_window.rendererInterface()->getResource(&m_window, QSGRendererInterface::PainterResource));
    if (!painter) {
        return;
    }
    const QRectF wanted = matrix()->mapRect(m_rect);
    if (!m_picture && std::max(wanted.width(), wanted.height()) > kLongestPainted) {
        return;
    }
    const QRect seen = wanted.toAlignedRect() & painter->window();
    const QRegion *clip = state->clipRegion();
    if (seen.isEmpty() || (clip && !clip->isEmpty() && !clip->intersects(seen))) {
        return;
    }
    // Asked for only where it cuts something off: with a clip, hundreds of pictures cost twice as much.
    if (clip && !clip->isEmpty() && !(clip->rectCount() == 1 && clip->boundingRect().contains(seen))) {
        painter->setClipRegion(*clip, Qt::ReplaceClip);
    }
    painter->setTransform(matrix()->toTransform());
    painter->setOpacity(inheritedOpacity());
    if (!m_picture) {
        m_drawing.paint(*painter);
        return;
    }
    const QTransform toDevice = painter->deviceTransform();
    if (!fits(toDevice, m_picture->place().scale)) {
        painter->setRenderHint(QPainter::SmoothPixmapTransform, toDevice.type() > QTransform::TxScale);
        painter->drawImage(m_picture->area(), m_picture->image());
        return;
    }
    const QPointF exact = toDevice.map(m_picture->area().topLeft());
    const double ratio = painter->device()->devicePixelRatio();
    painter->resetTransform();
    const QRectF target(QPointF(std::round(exact.x()), std::round(exact.y())) / ratio,
                        QSizeF(m_picture->image().size()) / ratio);
    if (ratio == 1) {
        painter->drawImage(target.topLeft(), m_picture->image());
    } else {
        painter->drawImage(target, m_picture->image());
    }
}

} // namespace tallowby
