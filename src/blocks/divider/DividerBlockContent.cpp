#include "blocks/divider/DividerBlockContent.h"

#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace tallowby {

void DividerBlockContent::componentComplete() {
    BlockBody::componentComplete();
    // After the container has followed.
    connect(block(), &Block::yPositionChanged, this, &DividerBlockContent::placeRule, Qt::QueuedConnection);
    placeRule();
}

void DividerBlockContent::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    BlockBody::geometryChange(newGeometry, oldGeometry);
    placeRule();
}

void DividerBlockContent::setZoom(double zoom) {
    BlockBody::setZoom(zoom);
    placeRule();
}

void DividerBlockContent::itemChange(ItemChange change, const ItemChangeData &data) {
    BlockBody::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || (change == ItemSceneChange && data.window)) {
        placeRule();
    }
}

/// Between two pixels the rule would be a pixel thicker in one place than in another. The canvas origin lies on a whole
/// pixel, so that a pan changes nothing.
void DividerBlockContent::placeRule() {
    const double pixelsPerPoint = zoom() * (window() ? window()->effectiveDevicePixelRatio() : 1.0);
    const int thickness = std::max(1, int(std::lround(kThickness * pixelsPerPoint)));
    const double middle = (height() - thickness / pixelsPerPoint) / 2;
    const double pixel = ((parentItem() ? parentItem()->y() : 0.0) + middle) * pixelsPerPoint;
    const double top = middle + (std::round(pixel) - pixel) / pixelsPerPoint;
    if (m_thickness != thickness || m_ruleTop != top || m_pixelsPerPoint != pixelsPerPoint) {
        m_thickness = thickness;
        m_ruleTop = top;
        m_pixelsPerPoint = pixelsPerPoint;
        Q_EMIT ruleChanged();
    }
}

} // namespace tallowby
