#pragma once

#include "platform/desktop/VideoFrames.h"

#include <QPointer>
#include <QQuickItem>

namespace tallowby {

/// Draws the pictures of a camera or a film as they come, with their own shape.
class VideoSurface : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QObject *frames READ frames WRITE setFrames NOTIFY framesChanged)
    /// Whether the picture fills the item and is cut, or is whole within it.
    Q_PROPERTY(bool fills MEMBER m_fills NOTIFY fillsChanged)
    Q_PROPERTY(bool hasPicture READ hasPicture NOTIFY hasPictureChanged)

public:
    explicit VideoSurface(QQuickItem *parent = nullptr);

    [[nodiscard]] QObject *frames() const { return m_frames; }
    void setFrames(QObject *frames);
    [[nodiscard]] bool hasPicture() const { return m_hasPicture; }

    struct Placement {
        /// In the item.
        QRectF target;
        /// In the picture, in pixels.
        QRectF source;
    };
    [[nodiscard]] static Placement place(QSizeF picture, QSizeF item, bool fills);

Q_SIGNALS:
    void framesChanged();
    void fillsChanged();
    void hasPictureChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void showNewest();

    QPointer<VideoFrames> m_frames;
    QImage m_picture;
    bool m_isNew = false;
    bool m_fills = false;
    bool m_hasPicture = false;
};

} // namespace tallowby
