#pragma once

#include <QBrush>
#include <QPainterPath>
#include <QPen>
#include <QRectF>

#include <vector>

class QPainter;

namespace tallowby {

/// One path with what it is filled and stroked with.
struct PathLayer {
    QPainterPath path;
    QBrush fill = Qt::NoBrush;
    QPen pen = Qt::NoPen;
};

/// Vector paths over each other, the first one lowest, in points. A value: cheap to copy, never changed. A copy is for
/// the thread that it was made on; another thread gets one made by `apart`.
class PathDrawing {
public:
    PathDrawing() = default;
    explicit PathDrawing(std::vector<PathLayer> layers);

    [[nodiscard]] const std::vector<PathLayer> &layers() const { return m_layers; }
    [[nodiscard]] bool isEmpty() const { return m_bounds.isEmpty(); }
    /// Holds everything that is inked, and little more.
    [[nodiscard]] const QRectF &bounds() const { return m_bounds; }
    /// Under the painter's transform, with smooth edges.
    void paint(QPainter &painter) const;
    /// The same drawing for a thread of its own. A path keeps what painting it has worked out, without a lock, in data
    /// that all its plain copies share. The points remain shared; call it on the thread that paints this one.
    [[nodiscard]] PathDrawing apart() const;

private:
    std::vector<PathLayer> m_layers;
    QRectF m_bounds;
};

} // namespace tallowby
