#include "canvas/drawing/SoftwarePathNode.h"

#include "canvas/drawing/ClippedOutlines.h"
#include "platform/scene/NodePainter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// Of the scale, that the picture counts as fitting: far less than a pixel over the whole screen.
constexpr double kScaleTolerance = 1e-5;

/// In screen points. The rasteriser does not come to an end with outlines that are far longer than the screen.
constexpr double kLongestPainted = 8'000;

bool fits(const QTransform &toDevice, double scale) {
    const auto isScale = [scale](double factor) { return std::abs(factor / scale - 1) < kScaleTolerance; };
    return toDevice.type() <= QTransform::TxScale && isScale(toDevice.m11()) && isScale(toDevice.m22());
}

bool isUpright(const QTransform &toDevice) {
    return toDevice.type() <= QTransform::TxScale && toDevice.m11() > 0 && toDevice.m22() > 0;
}

/// Null where the painter draws on something else than pixels in memory.
QImage *pixelsOf(QPainter &painter) {
    QPaintDevice *device = painter.device();
    auto *image = device->devType() == QInternal::Image ? static_cast<QImage *>(device) : nullptr;
    return image && image->depth() == 32 ? image : nullptr;
}

/// In pixels of the device, whose window the region is in.
QRegion inPixels(const QRegion &region, double ratio) {
    QRegion pixels;
    for (const QRect &rect : region) {
        pixels += QTransform::fromScale(ratio, ratio).mapRect(QRectF(rect)).toAlignedRect();
    }
    return pixels;
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
    const auto painting = painterFor(*this, *state, m_window);
    if (!painting) {
        return;
    }
    const auto &[painter, dirty] = *painting;
    if (!m_picture) {
        paintOutlines(painter, matrix()->mapRect(m_rect));
        return;
    }
    const QTransform toDevice = painter.deviceTransform();
    const bool isExact = fits(toDevice, m_picture->place().scale);
    const QPointF place = toDevice.map(m_picture->area().topLeft());
    const QPointF wholePlace(std::round(place.x()), std::round(place.y()));
    const double ratio = painter.device()->devicePixelRatio();
    QImage *pixels = pixelsOf(painter);
    if (m_picture->ink() && pixels && isUpright(toDevice) && inheritedOpacity() >= 1) {
        const double scale = m_picture->place().scale;
        const InkedPixels::Placement placement =
            isExact
                ? InkedPixels::Placement{.topLeft = wholePlace}
                : InkedPixels::Placement{.topLeft = place, .scale = {toDevice.m11() / scale, toDevice.m22() / scale}};
        for (const QRect &rect : inPixels(dirty, ratio)) {
            m_picture->ink()->paint(*pixels, placement, rect);
        }
        return;
    }
    const QImage image = m_picture->image();
    if (!isExact) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform, toDevice.type() > QTransform::TxScale);
        painter.drawImage(m_picture->area(), image);
        return;
    }
    painter.resetTransform();
    const QRectF target(wholePlace / ratio, QSizeF(image.size()) / ratio);
    if (ratio == 1) {
        painter.drawImage(target.topLeft(), image);
    } else {
        painter.drawImage(target, image);
    }
}

void SoftwarePathNode::paintOutlines(QPainter &painter, const QRectF &wanted) const {
    if (std::max(wanted.width(), wanted.height()) <= kLongestPainted) {
        m_drawing.paint(painter);
        return;
    }
    const QTransform toWindow = painter.transform();
    painter.resetTransform();
    clippedOutlines(m_drawing, toWindow, painter.window()).paint(painter);
}

} // namespace tallowby
