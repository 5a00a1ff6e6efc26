#include "blocks/video/VideoSurface.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

/// Of both sides together, in points.
constexpr double kThinnestBorder = 4;

} // namespace

VideoSurface::VideoSurface(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(this, &VideoSurface::fillsChanged, this, &QQuickItem::update);
}

void VideoSurface::setFrames(QObject *frames) {
    if (m_frames == frames) {
        return;
    }
    if (m_frames) {
        m_frames->disconnect(this);
    }
    m_frames = qobject_cast<VideoFrames *>(frames);
    if (m_frames) {
        connect(m_frames, &VideoFrames::changed, this, &VideoSurface::showNewest);
    }
    showNewest();
    Q_EMIT framesChanged();
}

void VideoSurface::showNewest() {
    m_picture = m_frames ? m_frames->newest() : QImage();
    m_isNew = true;
    update();
    if (std::exchange(m_hasPicture, !m_picture.isNull()) == m_picture.isNull()) {
        Q_EMIT hasPictureChanged();
    }
}

void VideoSurface::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

VideoSurface::Placement VideoSurface::place(QSizeF picture, QSizeF item, bool fills) {
    const QRectF whole({0, 0}, item);
    if (picture.isEmpty() || item.isEmpty()) {
        return {whole, {{0, 0}, picture}};
    }
    if (fills) {
        QRectF part({0, 0}, item.scaled(picture, Qt::KeepAspectRatio));
        part.moveCenter(QRectF({0, 0}, picture).center());
        return {whole, part};
    }
    QRectF part({0, 0}, picture.scaled(item, Qt::KeepAspectRatio));
    // A seam as thin as that would look like a mistake.
    if (whole.width() - part.width() < kThinnestBorder && whole.height() - part.height() < kThinnestBorder) {
        return {whole, {{0, 0}, picture}};
    }
    part.moveCenter(whole.center());
    // Edges between points would be drawn dark.
    return {QRectF(part.toRect()), {{0, 0}, picture}};
}

QSGNode *VideoSurface::updatePaintNode(QSGNode *old, UpdatePaintNodeData *) {
    auto *node = static_cast<QSGImageNode *>(old);
    if (m_picture.isNull() || width() <= 0 || height() <= 0) {
        delete node;
        m_isNew = true;
        return nullptr;
    }
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
        m_isNew = true;
    }
    if (std::exchange(m_isNew, false)) {
        node->setTexture(window()->createTextureFromImage(m_picture, QQuickWindow::TextureIsOpaque));
    }
    const auto [target, source] = place(m_picture.size(), size(), m_fills);
    node->setRect(target);
    node->setSourceRect(source);
    return node;
}

} // namespace tallowby
