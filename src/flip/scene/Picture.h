#pragma once

#include <QImage>
#include <QQuickItem>

namespace tallowby {

/// Lets QML's tools know the type of the properties that carry images.
struct ImageValue {
    Q_GADGET
    QML_FOREIGN(QImage)
    QML_ANONYMOUS
};

/// Shows an image that fills the item, its aspect kept and what is over cropped evenly.
class Picture : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QImage image READ image WRITE setImage NOTIFY imageChanged FINAL)

public:
    explicit Picture(QQuickItem *parent = nullptr);

    [[nodiscard]] const QImage &image() const { return m_image; }
    void setImage(const QImage &image);

    /// The middle part of something of size `source` that has the aspect of `target`. Empty when either is.
    [[nodiscard]] static QRectF coveringPart(QSizeF source, QSizeF target);

Q_SIGNALS:
    void imageChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;

private:
    QImage m_image;
    bool m_isTextureStale = false;
};

} // namespace tallowby
