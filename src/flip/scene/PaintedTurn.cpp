#include "flip/scene/PaintedTurn.h"

#include "flip/scene/Picture.h"
#include "flip/scene/SoftenedPicture.h"
#include "flip/scene/TurnedCard.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGRenderNode>

#include <cmath>
#include <numbers>

namespace tallowby {

namespace {

/// Puts a frame on the window as it is.
class FrameNode final : public QSGRenderNode {
public:
    FrameNode(QQuickWindow &window, std::shared_ptr<const QImage> frame)
        : m_window(window)
        , m_frame(std::move(frame)) {}

    void showFrame(const QRectF &rect) {
        m_rect = rect;
        markDirty(DirtyMaterial | DirtyGeometry);
    }

    [[nodiscard]] QRectF rect() const override { return m_rect; }
    [[nodiscard]] RenderingFlags flags() const override { return BoundedRectRendering | OpaqueRendering; }

    void render(const RenderState *state) override {
        auto *painter = static_cast<QPainter *>(
            m_window.rendererInterface()->getResource(&m_window, QSGRendererInterface::PainterResource));
        if (const QRegion *clip = state->clipRegion(); clip && !clip->isEmpty()) {
            painter->setClipRegion(*clip, Qt::ReplaceClip);
        }
        painter->setTransform(matrix()->toTransform());
        painter->setOpacity(inheritedOpacity());
        painter->drawImage(m_rect, *m_frame);
    }

private:
    QQuickWindow &m_window;
    std::shared_ptr<const QImage> m_frame;
    QRectF m_rect;
};

/// An image that fills the size, its aspect kept and what is over cropped evenly, on an opaque ground.
QImage filling(QSize size, const QImage &image, const QColor &ground) {
    QImage result(size, QImage::Format_RGB32);
    result.fill(ground);
    if (!image.isNull()) {
        QPainter painter(&result);
        painter.setRenderHint(QPainter::SmoothPixmapTransform, image.size() != size);
        painter.drawImage(QRectF({}, size), image, Picture::coveringPart(image.size(), size));
    }
    return result;
}

} // namespace

PaintedTurn::PaintedTurn(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void PaintedTurn::setScene(FlipSceneView *scene) {
    m_scene = scene;
    connect(scene, &FlipSceneView::poseChanged, this, &QQuickItem::update);
    connect(scene, &FlipSceneView::pictureChanged, this, &PaintedTurn::forgetCard);
    Q_EMIT sceneChanged();
}

void PaintedTurn::setBackdrop(BackdropView *backdrop) {
    m_backdrop = backdrop;
    connect(backdrop, &BackdropView::captureChanged, this, &PaintedTurn::forgetGround);
    Q_EMIT backdropChanged();
}

void PaintedTurn::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    forgetGround();
    forgetCard();
}

void PaintedTurn::forgetGround() {
    m_ground = {};
    *m_frame = {};
    update();
}

void PaintedTurn::forgetCard() {
    m_card = {};
    update();
}

void PaintedTurn::prepareGround(QSize size) {
    if (m_ground.size() != size) {
        const QImage capture = m_backdrop->capture();
        const QColor veil = BackdropView::veilColor();
        m_ground = filling(size, softened(capture, veil, BackdropView::veilStrength()), veil);
    }
}

void PaintedTurn::prepareCard(QSize size) {
    if (m_card.size() != size) {
        m_card = filling(size, m_scene->backPictureImage(), FlipSceneView::creamColor());
    }
}

const QImage &PaintedTurn::paintedFrame() {
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    const QSize pixels = (size() * ratio).toSize();
    prepareGround(pixels);
    if (m_frame->size() != pixels) {
        *m_frame = QImage(pixels, QImage::Format_RGB32);
    }
    if (m_scene->crossFades()) {
        paintCrossFade();
    } else {
        paintRotation();
    }
    return *m_frame;
}

QRect PaintedTurn::frontPlace() const {
    QRect place({}, m_scene->frontPicture().size());
    place.moveCenter(m_frame->rect().center());
    return place;
}

void PaintedTurn::paintCrossFade() {
    prepareCard(m_frame->size());
    QPainter painter(m_frame.get());
    painter.drawImage(0, 0, m_ground);
    painter.drawImage(frontPlace().topLeft(), m_scene->frontPicture());
    painter.setOpacity(m_scene->backOpacity());
    painter.drawImage(0, 0, m_card);
}

void PaintedTurn::paintRotation() {
    TurnedFace face;
    face.angle = m_scene->angle();
    face.shade = m_scene->shadowOpacity();
    if (std::cos(face.angle) > 0) {
        face.picture = m_scene->frontPicture();
        face.place = frontPlace();
    } else {
        prepareCard(m_frame->size());
        face.picture = m_card;
        face.place = m_frame->rect();
        face.angle += std::numbers::pi;
    }
    paintTurnedFace(face, m_ground, *m_frame);
}

QSGNode *PaintedTurn::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *) {
    auto *node = static_cast<FrameNode *>(oldNode);
    if (size().isEmpty() || !m_scene || !m_backdrop) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = new FrameNode(*window(), m_frame);
    }
    (void) paintedFrame();
    node->showFrame(boundingRect());
    return node;
}

} // namespace tallowby
