#pragma once

#include "canvas/drawing/PathPicture.h"

#include <QSGRenderNode>

#include <memory>

class QPainter;
class QQuickWindow;

namespace tallowby {

/// Vector paths in a scene that is painted without a graphics interface: their picture where it fits the screen pixel
/// by pixel, or scaled while another is being made, else the paths themselves.
class SoftwarePathNode final : public QSGRenderNode {
public:
    explicit SoftwarePathNode(QQuickWindow &window)
        : m_window(window) {}

    /// Without a picture the paths themselves are painted.
    void show(const PathDrawing &drawing, std::shared_ptr<const PathPicture> picture);

    void render(const RenderState *state) override;
    [[nodiscard]] StateFlags changedStates() const override { return {}; }
    [[nodiscard]] RenderingFlags flags() const override { return BoundedRectRendering; }
    [[nodiscard]] QRectF rect() const override { return m_rect; }

private:
    /// `wanted`: what the drawing takes up in the window.
    void paintOutlines(QPainter &painter, const QRectF &wanted) const;

    QQuickWindow &m_window;
    PathDrawing m_drawing;
    std::shared_ptr<const PathPicture> m_picture;
    QRectF m_rect;
};

} // namespace tallowby
