#include "platform/scene/NodePainter.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGRendererInterface>

namespace tallowby {

std::optional<NodePainter> painterFor(const QSGRenderNode &node, const QSGRenderNode::RenderState &state,
                                      QQuickWindow &window) {
    auto *painter = static_cast<QPainter *>(
        window.rendererInterface()->getResource(&window, QSGRendererInterface::PainterResource));
    if (!painter) {
        return std::nullopt;
    }
    const QTransform toWindow = node.matrix()->toTransform();
    const QRect seen = toWindow.mapRect(node.rect()).toAlignedRect() & painter->window();
    const QRegion *clip = state.clipRegion();
    const bool isClipped = clip && !clip->isEmpty();
    if (seen.isEmpty() || (isClipped && !clip->intersects(seen))) {
        return std::nullopt;
    }
    // Set only where it cuts something off: a clip for each of hundreds of nodes costs as much as what they paint.
    if (isClipped && !(clip->rectCount() == 1 && clip->boundingRect().contains(seen))) {
        painter->setClipRegion(*clip, Qt::ReplaceClip);
    }
    painter->setTransform(toWindow);
    painter->setOpacity(node.inheritedOpacity());
    return NodePainter{.painter = *painter, .dirty = isClipped ? *clip & seen : QRegion(seen)};
}

} // namespace tallowby
