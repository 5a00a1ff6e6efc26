#include "blocks/card/CardGround.h"

#include "canvas/drawing/SoftwarePathNode.h"
#include "platform/scene/NodePainter.h"
#include "platform/scene/SceneGraph.h"

#include <QPainter>
#include <QQuickWindow>

#include <private/qsgadaptationlayer_p.h>

#include <algorithm>
#include <cmath>
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

/// A card without round corners and with an edge of one pixel of the screen, whatever the zoom.
class SmallCardNode final : public QSGRenderNode {
public:
    explicit SmallCardNode(QQuickWindow &window)
        : m_window(window) {}

    void show(QSizeF size, const QColor &ground, const QColor &edge) {
        m_rect = {{0, 0}, size};
        m_ground = ground;
        m_edge = edge;
        markDirty(DirtyGeometry | DirtyMaterial);
    }

    [[nodiscard]] QRectF rect() const override { return m_rect; }
    [[nodiscard]] RenderingFlags flags() const override { return BoundedRectRendering; }

    void render(const RenderState *state) override {
        const auto painting = painterFor(*this, *state, m_window);
        if (!painting) {
            return;
        }
        QPainter &painter = painting->painter;
        const QTransform toDevice = painter.deviceTransform();
        QRectF frame = m_rect;
        double pixel = 1 / std::sqrt(std::abs(toDevice.determinant()));
        painter.setRenderHint(QPainter::Antialiasing, toDevice.type() > QTransform::TxScale);
        if (toDevice.type() <= QTransform::TxScale) {
            painter.resetTransform();
            pixel = 1 / painter.device()->devicePixelRatio();
            const QRectF onDevice = toDevice.mapRect(m_rect);
            const QPoint topLeft = onDevice.topLeft().toPoint();
            const QPoint bottomRight = onDevice.bottomRight().toPoint();
            frame = QRectF(QPointF(topLeft) * pixel, QPointF(bottomRight) * pixel);
        }
        painter.fillRect(frame, m_edge);
        painter.fillRect(frame.adjusted(pixel, pixel, -pixel, -pixel), m_ground);
    }

private:
    QQuickWindow &m_window;
    QRectF m_rect;
    QColor m_ground;
    QColor m_edge;
};

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
    const double edgeWidth = border()->isValid() ? border()->width() : 0;
    const Form form = this->form(edgeWidth > 0);
    if (std::exchange(m_form, form) != form) {
        delete old;
        old = nullptr;
    }
    switch (form) {
    case Form::path: {
        auto *node = old ? static_cast<SoftwarePathNode *>(old) : new SoftwarePathNode(*window());
        node->show(card(size(), std::min({radius(), width() / 2, height() / 2}), color(), border()->color(), edgeWidth),
                   nullptr);
        return node;
    }
    case Form::smallCard: {
        auto *node = old ? static_cast<SmallCardNode *>(old) : new SmallCardNode(*window());
        node->show(size(), color(), border()->color());
        return node;
    }
    case Form::rectangle:
        break;
    }
    QSGNode *node = QQuickRectangle::updatePaintNode(old, data);
    if (node && !sceneGraphHasShaders()) {
        hideOpacity(static_cast<QSGInternalRectangleNode &>(*node), color());
    }
    return node;
}

CardGround::Form CardGround::form(bool hasEdge) const {
    if (!m_isScaled || width() <= 0 || height() <= 0 || sceneGraphHasShaders()) {
        return Form::rectangle;
    }
    // Less rounds nothing off: a card that is too small to be read.
    if (radius() >= 1) {
        return Form::path;
    }
    return hasEdge ? Form::smallCard : Form::rectangle;
}

} // namespace tallowby
