#pragma once

#include <QColor>
#include <QList>
#include <QRectF>
#include <QSGTransformNode>

#include <memory>

class QQuickWindow;

namespace tallowby {

/// Many rectangles of one opaque colour as a single node of the scene graph, with hard edges. With a graphics interface
/// they are one piece of geometry, without one they are painted. Render thread only.
class FlatRectanglesNode : public QSGTransformNode {
public:
    /// The kind of node that the window's scene graph draws. The window outlives it.
    [[nodiscard]] static std::unique_ptr<FlatRectanglesNode> create(QQuickWindow &window);

    virtual void setColor(const QColor &color) = 0;
    virtual void setRectangles(const QList<QRectF> &rectangles) = 0;
};

} // namespace tallowby
