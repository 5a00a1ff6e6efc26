#include "flip/scene/BackdropView.h"

#include "flip/scene/HexColor.h"
#include "platform/scene/SceneGraph.h"

namespace tallowby {

void BackdropView::setCapture(const QImage &capture) {
    if (m_capture.cacheKey() == capture.cacheKey()) {
        return;
    }
    m_capture = capture;
    Q_EMIT captureChanged();
}

bool BackdropView::usesShaders() {
    return sceneGraphHasShaders();
}

QColor BackdropView::veilColor() {
    static const QColor color = colorFromHex(u"F4F3EF");
    return color;
}

void BackdropView::setShade(qreal shade) {
    if (std::exchange(m_shade, shade) != shade) {
        Q_EMIT shadeChanged();
    }
}

QColor BackdropView::shadedVeil() const {
    const QColor veil = veilColor();
    const auto light = float(1 - m_shade);
    return QColor::fromRgbF(veil.redF() * light, veil.greenF() * light, veil.blueF() * light);
}

} // namespace tallowby
