#include "canvas/overlay/minimap/MiniMapView.h"

#include "canvas/overlay/minimap/MiniMapPicture.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <cmath>

namespace tallowby {

namespace {

/// While blocks change all the time, ten pictures a second are enough.
constexpr std::chrono::milliseconds kRefreshDelay{100};

} // namespace

MiniMapView::MiniMapView(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
    setAcceptedMouseButtons(Qt::LeftButton);
    connect(&Theme::shared(), &Theme::changed, this, &MiniMapView::blocksChanged);
}

void MiniMapView::setCanvas(InfiniteCanvasView *canvas) {
    if (m_canvas == canvas) {
        return;
    }
    m_canvas = canvas;
    if (canvas) {
        connect(canvas, &InfiniteCanvasView::viewportChanged, this, &MiniMapView::followViewport);
        connect(&canvas->viewModel(), &CanvasViewModel::blocksChanged, this, &MiniMapView::blocksChanged);
        connect(&canvas->viewModel(), &CanvasViewModel::framesChanged, this, &MiniMapView::blocksChanged);
        followViewport();
        blocksChanged();
    }
    Q_EMIT canvasChanged();
}

void MiniMapView::setPadding(qreal padding) {
    if (m_geometry.padding != padding) {
        m_geometry.padding = padding;
        update();
        Q_EMIT paddingChanged();
        Q_EMIT mapChanged();
    }
}

void MiniMapView::setIsIntroduced(bool isIntroduced) {
    if (m_isIntroduced != isIntroduced) {
        m_isIntroduced = isIntroduced;
        blocksChanged();
        Q_EMIT mapChanged();
    }
}

void MiniMapView::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (m_geometry.mapSize != newGeometry.size()) {
        m_geometry.mapSize = newGeometry.size();
        blocksChanged();
        Q_EMIT mapChanged();
    }
}

void MiniMapView::itemChange(ItemChange change, const ItemChangeData &data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || (change == ItemSceneChange && data.window)) {
        blocksChanged();
    }
}

void MiniMapView::blocksChanged() {
    m_isStale = true;
    refreshSoon();
}

void MiniMapView::refreshSoon() {
    if (m_canvas && !m_refresh.isPending()) {
        m_refresh = m_canvas->viewModel().scheduler().after(kRefreshDelay, [this] { refresh(); });
    }
}

void MiniMapView::followViewport() {
    const Viewport &viewport = m_canvas->viewport();
    const bool wasShown = isShown();
    m_geometry.offset = viewport.offset();
    m_geometry.scale = viewport.scale();
    m_geometry.viewportSize = viewport.size();
    if (isShown()) {
        if (m_isStale) {
            refreshSoon();
        }
        update();
    }
    if (wasShown || isShown()) {
        Q_EMIT mapChanged();
    }
}

void MiniMapView::refresh() {
    const std::vector<BlockPtr> &blocks = m_canvas->viewModel().blocks();
    std::vector<MiniMapMark> marks;
    marks.reserve(blocks.size());
    std::array<QRgb, kBlockTypeCount> colors{};
    for (int type = 0; type < kBlockTypeCount; ++type) {
        const auto color = m_canvas->blockKinds().kind(BlockType(type)).miniMapColor;
        colors.at(std::size_t(type)) = (Theme::shared().*color)().rgba();
    }
    QRectF around;
    for (const BlockPtr &block : blocks) {
        const QRectF frame(block->xPosition(), block->yPosition(), block->width(), block->height());
        around = marks.empty() ? frame : around | frame;
        marks.push_back({frame, colors.at(std::size_t(block->blockType()))});
    }
    m_geometry.blocks = around;
    if (isShown() && !marks.empty()) {
        m_isStale = false;
        const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1;
        const QSizeF size = m_geometry.toMap(around).size() * ratio;
        const QSize pixels = QSize(int(std::ceil(size.width())), int(std::ceil(size.height()))).expandedTo({1, 1});
        m_picture = paintMiniMap(marks, around, pixels);
        m_hasNewPicture = true;
    }
    update();
    Q_EMIT mapChanged();
}

QSGNode *MiniMapView::updatePaintNode(QSGNode *node, UpdatePaintNodeData *) {
    auto *image = static_cast<QSGImageNode *>(node);
    if (m_picture.isNull() || !isShown()) {
        delete image;
        return nullptr;
    }
    if (!image) {
        image = window()->createImageNode();
        image->setOwnsTexture(true);
        image->setFiltering(QSGTexture::Linear);
        // Nodes go without notice when the canvas changes hands, and none may be drawn without a texture.
        m_hasNewPicture = true;
    }
    if (std::exchange(m_hasNewPicture, false)) {
        image->setTexture(window()->createTextureFromImage(m_picture));
    }
    image->setRect(m_geometry.toMap(m_geometry.blocks));
    return image;
}

void MiniMapView::mousePressEvent(QMouseEvent *event) {
    const QRectF outline = viewportOutline();
    m_pressed = m_geometry;
    m_grip = outline.contains(event->position()) ? outline.center() - event->position() : QPointF();
    moveViewport(event->position());
}

void MiniMapView::mouseMoveEvent(QMouseEvent *event) {
    moveViewport(event->position());
}

void MiniMapView::mouseReleaseEvent(QMouseEvent *) {
    m_pressed.reset();
}

void MiniMapView::mouseUngrabEvent() {
    m_pressed.reset();
}

void MiniMapView::moveViewport(QPointF mapPoint) {
    const QPointF offset = m_pressed->offsetShowing(m_pressed->toCanvas(mapPoint + m_grip));
    if (std::isfinite(offset.x()) && std::isfinite(offset.y())) {
        Q_EMIT jump(offset);
    }
}

} // namespace tallowby
