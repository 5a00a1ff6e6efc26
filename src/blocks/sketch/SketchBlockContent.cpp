#include "blocks/sketch/SketchBlockContent.h"

#include "canvas/drawing/PathDrawingItem.h"
#include "canvas/drawing/SketchRenderer.h"
#include "model/AnyCodable.h"
#include "platform/theme/Theme.h"

namespace tallowby {

namespace {

constexpr double kLongestSide = 10'000;

/// No stroke has been drawn yet.
bool isBlank(const Block &block) {
    const QByteArray payload = block.content().trimmed();
    const auto strokes = block.contentField(QStringLiteral("strokes"));
    const auto *list = strokes ? std::get_if<AnyCodable::Array>(&strokes->value()) : nullptr;
    return payload.isEmpty() || payload == "{}" || (list && list->empty());
}

/// Where a sketch is of which nothing can be read: else nobody could find it, or take it away.
PathLayer unreadable(QSizeF size) {
    QPen dashes(Theme::shared().inkSoft(), 1.5, Qt::DashLine);
    dashes.setDashPattern({4, 4});
    QPainterPath frame;
    frame.addRoundedRect(QRectF({0, 0}, size.boundedTo({kLongestSide, kLongestSide})).adjusted(1, 1, -1, -1),
                         Theme::cardRadius(), Theme::cardRadius());
    return {.path = frame, .pen = dashes};
}

} // namespace

SketchBlockContent::SketchBlockContent(QQuickItem *parent)
    : BlockBody(parent)
    , m_strokes(new PathDrawingItem(PathDrawingItem::Keeping::picture, this)) {}

PathDrawing SketchBlockContent::drawing(const Block &block) {
    const QPointF origin(block.xPosition(), block.yPosition());
    std::vector<PathLayer> layers;
    for (const SketchStroke &stroke : block.sketchStrokes()) {
        if (!stroke.points.empty()) {
            layers.push_back(
                SketchRenderer::stroke(stroke.points, SketchRenderer::shownColor(stroke.color), stroke.width, origin));
        }
    }
    if (layers.empty() && !isBlank(block)) {
        layers.push_back(unreadable({block.width(), block.height()}));
    }
    return PathDrawing(std::move(layers));
}

void SketchBlockContent::componentComplete() {
    BlockBody::componentComplete();
    // Drawn before the next frame: a move writes the block's place and its points one after the other.
    connect(block(), &Block::contentChanged, this, &QQuickItem::polish);
    connect(block(), &Block::xPositionChanged, this, &QQuickItem::polish);
    connect(block(), &Block::yPositionChanged, this, &QQuickItem::polish);
    connect(&Theme::shared(), &Theme::changed, this, &SketchBlockContent::redraw);
    polish();
}

void SketchBlockContent::redraw() {
    m_drawnContent.reset();
    polish();
}

void SketchBlockContent::updatePolish() {
    const QPointF place(block()->xPosition(), block()->yPosition());
    if (m_drawnContent != block()->content()) {
        m_drawnContent = block()->content();
        m_drawnPlace = place;
        m_strokes->setDrawing(drawing(*block()));
    }
    // A resize moves the block's corner and none of its points.
    m_strokes->setPosition(m_drawnPlace - place);
}

void SketchBlockContent::setZoom(double zoom) {
    BlockBody::setZoom(zoom);
    m_strokes->setZoom(zoom);
}

void SketchBlockContent::settleZoom() {
    BlockBody::settleZoom();
    m_strokes->settleZoom();
}

} // namespace tallowby
