#pragma once

#include <QRegion>
#include <QSGRenderNode>

#include <optional>

class QPainter;
class QQuickWindow;

namespace tallowby {

/// What a node of a scene without a graphics interface paints itself with.
struct NodePainter {
    /// With the node's transform and opacity, and clipped to what is drawn anew wherever that cuts something off.
    QPainter &painter;
    /// What is drawn anew and the node may be seen in, in points of the window; not empty.
    QRegion dirty;
};

/// To be called by `render` of the node. None where nothing of the node's `rect` has to be painted.
[[nodiscard]] std::optional<NodePainter> painterFor(const QSGRenderNode &node, const QSGRenderNode::RenderState &state,
                                                    QQuickWindow &window);

} // namespace tallowby
