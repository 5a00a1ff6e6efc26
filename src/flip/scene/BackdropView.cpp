#include "flip/scene/BackdropView.h"

#include "flip/scene/HexColor.h"

#include <QQuickWindow>

namespace tallowby {

void BackdropView::setCapture(const QImage &capture) {
    if (m_capture.cacheKey() == capture.cacheKey()) {
        return;
    }
    m_capture = capture;
    Q_EMIT captureChanged();
}

bool BackdropView::usesShaders() {
    return QQuickWindow::sceneGraphBackend() != QLatin1StringView("software");
}

QColor BackdropView::veilColor() {
    static const QColor color = colorFromHex(u"F4F3EF");
    return color;
}

} // namespace tallowby
