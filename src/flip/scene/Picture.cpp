#include "flip/scene/Picture.h"

#include <QQuickWindow>
#include <QSGImageNode>

namespace tallowby {

Picture::Picture(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void Picture::setImage(const QImage &image) {
    if (m_image.cacheKey() == image.cacheKey()) {
        return;
    }
    m_image = image;
    m_isTextureStale = true;
    update();
    Q_EMIT imageChanged();
}

QRectF Picture::coveringPart(QSizeF source, QSizeF target) {
    if (source.isEmpty() || target.isEmpty()) {
        return {};
    }
    QRectF part({}, target.scaled(source, Qt::KeepAspectRatio));
    part.moveCenter({source.width() / 2, source.height() / 2});
    return part;
}

QSGNode *Picture::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *) {
    auto *node = static_cast<QSGImageNode *>(oldNode);
    if (m_image.isNull() || boundingRect().isEmpty()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
        m_isTextureStale = true;
    }
    if (std::exchange(m_isTextureStale, false)) {
        node->setTexture(window()->createTextureFromImage(
            m_image, m_image.hasAlphaChannel() ? QQuickWindow::TextureHasAlphaChannel : QQuickWindow::TextureIsOpaque));
    }
    node->setRect(boundingRect());
    node->setSourceRect(coveringPart(m_image.size(), size()));
    return node;
}

} // namespace tallowby
