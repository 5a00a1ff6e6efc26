#include "blocks/card/CardGround.h"

#include "canvas/drawing/SoftwarePathNode.h"
#include "platform/scene/SceneGraph.h"

#include <QQuickWindow>

#include <private/qsgadaptationlayer_p.h>

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

QPainterPath rounded(const QRectF &frame, double radius) {
    QPainterPath path;
    path.addRoundedRect(frame, radius, radius);
    return path;
}

/// The edge is what the ground leaves of a card in its colour: filling twice costs less than a stroke.
PathDrawing card(QSizeF size, double radius, const QColor &ground, const QColor &edge, double edgeWidth) {
    const QRectF frame({0, 0}, size);
    const QRectF inner = frame.adjusted(edgeWidth, edgeWidth, -edgeWidth, -edgeWidth);
    if (edgeWidth <= 0 || inner.isEmpty()) {
        return PathDrawing({{.path = rounded(frame, radius), .fill = ground, .pen = Qt::NoPen}});
    }
    return PathDrawing({{.path = rounded(frame, radius), .fill = edge, .pen = Qt::NoPen},
                        {.path = rounded(inner, std::max(0.0, radius - edgeWidth)), .fill = ground, .pen = Qt::NoPen}});
}

/// Qt's own painter cuts out what is covered by opaque rectangles, piece by piece; for the cards of a zoomed-out canvas
/// that takes several times as long as painting what is below them. It leaves what shines through, however little.
void hideOpacity(QSGInternalRectangleNode &node, QColor color) {
    constexpr int kAlmostOpaque = 254;
    color.setAlpha(std::min(color.alpha(), kAlmostOpaque));
    node.setColor(color);
    node.update();
}

} // namespace

void CardGround::setIsScaled(bool isScaled) {
    if (m_isScaled != isScaled) {
        m_isScaled = isScaled;
        update();
        Q_EMIT isScaledChanged();
    }
}

QSGNode *CardGround::updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) {
    // Less rounds nothing off: a card that is too small to be read.
    const bool isPath = m_isScaled && radius() >= 1 && width() > 0 && height() > 0 && !sceneGraphHasShaders();
    if (std::exchange(m_isPath, isPath) != isPath) {
        delete old;
        old = nullptr;
    }
    if (!isPath) {
        QSGNode *node = QQuickRectangle::updatePaintNode(old, data);
        if (node && !sceneGraphHasShaders()) {
            hideOpacity(static_cast<QSGInternalRectangleNode &>(*node), color());
        }
        return node;
    }
    auto *node = old ? static_cast<SoftwarePathNode *>(old) : new SoftwarePathNode(*window());
    const double edgeWidth = border()->isValid() ? border()->width() : 0;
    node->show(card(size(), std::min({radius(), width() / 2, height() / 2}), color(), border()->color(), edgeWidth),
               nullptr);
    return node;
}

} // namespace tallowby
