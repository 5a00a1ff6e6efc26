#include "canvas/drawing/PathDrawingItem.h"

#include "canvas/drawing/SoftwarePathNode.h"
#include "platform/scene/SceneGraph.h"

#include <QCoreApplication>
#include <QPointer>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QThreadPool>

#include <cmath>

namespace tallowby {

namespace {

/// One thread: the other core draws frames meanwhile.
QThreadPool &pictureThread() {
    static QThreadPool pool;
    static const bool isSetUp = [] {
        pool.setMaxThreadCount(1);
        pool.setThreadPriority(QThread::LowPriority);
        return true;
    }();
    Q_UNUSED(isSetUp)
    return pool;
}

double fraction(double value) {
    return value - std::floor(value);
}

QSGNode *texturedNode(QSGNode *old, QQuickWindow &window, const PathPicture &picture) {
    auto *node = static_cast<QSGImageNode *>(old);
    if (!node) {
        node = window.createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
    }
    node->setTexture(window.createTextureFromImage(picture.image(), QQuickWindow::TextureHasAlphaChannel));
    node->setRect(picture.area());
    return node;
}

} // namespace

PathDrawingItem::PathDrawingItem(Keeping keeping, QQuickItem *parent)
    : QQuickItem(parent)
    , m_keeping(keeping) {
    setFlag(ItemHasContents);
}

PathDrawingItem::~PathDrawingItem() = default;

void PathDrawingItem::setDrawing(PathDrawing drawing) {
    m_drawing = std::move(drawing);
    ++m_drawingNumber;
    m_picture.reset();
    requestPicture();
    update();
}

void PathDrawingItem::settleZoom() {
    if (!m_picture || m_picture->place().scale != place().scale) {
        requestPicture();
    }
}

void PathDrawingItem::itemChange(ItemChange change, const ItemChangeData &data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || (change == ItemSceneChange && data.window)) {
        settleZoom();
    }
}

/// The canvas origin is on a whole device pixel, so that the phase is the same wherever the canvas is panned to.
PathPicture::Place PathDrawingItem::place() const {
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    const QPointF origin = mapToScene({0, 0}) * ratio;
    return {.scale = m_zoom * ratio, .phase = {fraction(origin.x()), fraction(origin.y())}};
}

void PathDrawingItem::requestPicture() {
    if (m_keeping == Keeping::nothing || m_drawing.isEmpty() || !window()) {
        return;
    }
    if (m_isPictureBeingMade) {
        m_isPictureDue = true;
        return;
    }
    m_isPictureBeingMade = true;
    const bool mayBeCoarse = sceneGraphHasShaders();
    const auto make = [drawing = m_drawing.apart(), place = place(), mayBeCoarse, number = m_drawingNumber,
                       item = QPointer(this)] {
        auto picture = mayBeCoarse ? PathPicture::makeBounded(drawing, place) : PathPicture::make(drawing, place);
        // Only the main thread may ask whether the item is still there.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [item, number, made = std::move(picture)] {
                if (item) {
                    item->takePicture(made, number);
                }
            },
            Qt::QueuedConnection);
    };
    pictureThread().start(make);
}

void PathDrawingItem::takePicture(std::shared_ptr<const PathPicture> picture, int drawingNumber) {
    m_isPictureBeingMade = false;
    if (drawingNumber == m_drawingNumber) {
        m_picture = std::move(picture);
        update();
    }
    if (std::exchange(m_isPictureDue, false)) {
        requestPicture();
    }
}

QSGNode *PathDrawingItem::updatePaintNode(QSGNode *old, UpdatePaintNodeData *) {
    if (m_drawing.isEmpty()) {
        delete old;
        return nullptr;
    }
    if (!sceneGraphHasShaders()) {
        auto *node = old ? static_cast<SoftwarePathNode *>(old) : new SoftwarePathNode(*window());
        node->show(m_drawing, m_picture);
        return node;
    }
    // Nothing can be shown without a picture: the first one is made at once, since a gap would be seen.
    if (!m_picture) {
        m_picture = PathPicture::makeBounded(m_drawing, place());
    }
    if (!m_picture) {
        delete old;
        return nullptr;
    }
    return texturedNode(old, *window(), *m_picture);
}

} // namespace tallowby
