#pragma once

#include "canvas/drawing/PathPicture.h"

#include <QQuickItem>

#include <memory>

namespace tallowby {

/// Shows vector paths on the canvas, at any zoom and with either scene graph. A picture of them is made aside, by a
/// thread of its own, and shown until something else is drawn or the zoom settles elsewhere: a pan makes nothing new,
/// and while the zoom changes, the old picture is shown scaled.
class PathDrawingItem : public QQuickItem {
    Q_OBJECT

public:
    enum class Keeping {
        /// What is shown for long.
        picture,
        /// What changes with every frame.
        nothing,
    };

    explicit PathDrawingItem(Keeping keeping, QQuickItem *parent = nullptr);
    ~PathDrawingItem() override;

    [[nodiscard]] const PathDrawing &drawing() const { return m_drawing; }
    void setDrawing(PathDrawing drawing);
    /// Screen points per point of the drawing.
    void setZoom(double zoom) { m_zoom = zoom; }
    /// The zoom will stay for a while.
    void settleZoom();
    /// What is shown now; null where the paths themselves are.
    [[nodiscard]] std::shared_ptr<const PathPicture> picture() const { return m_picture; }

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    [[nodiscard]] PathPicture::Place place() const;
    void requestPicture();
    void takePicture(std::shared_ptr<const PathPicture> picture, int drawingNumber);

    Keeping m_keeping;
    PathDrawing m_drawing;
    /// Counts the drawings, so that a picture of an earlier one is not shown.
    int m_drawingNumber = 0;
    double m_zoom = 1;
    std::shared_ptr<const PathPicture> m_picture;
    bool m_isPictureDue = false;
    bool m_isPictureBeingMade = false;
};

} // namespace tallowby
