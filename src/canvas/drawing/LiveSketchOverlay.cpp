#include "canvas/drawing/LiveSketchOverlay.h"

#include "canvas/drawing/PathDrawingItem.h"
#include "canvas/drawing/SketchRenderer.h"

namespace tallowby {

namespace {

std::unique_ptr<PathDrawingItem> makePiece(QQuickItem *layer) {
    return std::make_unique<PathDrawingItem>(PathDrawingItem::Keeping::nothing, layer);
}

} // namespace

LiveSketchOverlay::LiveSketchOverlay(QQuickItem *parent)
    : QQuickItem(parent)
    , m_layer(new QQuickItem(this))
    , m_tail(makePiece(m_layer)) {
    m_layer->setTransformOrigin(TopLeft);
}

LiveSketchOverlay::~LiveSketchOverlay() = default;

void LiveSketchOverlay::setState(LiveSketchState *state) {
    if (m_state == state) {
        return;
    }
    if (m_state) {
        m_state->disconnect(this);
    }
    m_state = state;
    if (m_state) {
        connect(m_state, &LiveSketchState::changed, this, &LiveSketchOverlay::follow);
    }
    redraw();
    Q_EMIT stateChanged();
}

void LiveSketchOverlay::setColor(const QString &color) {
    if (m_color != color) {
        m_color = color;
        redraw();
        Q_EMIT colorChanged();
    }
}

void LiveSketchOverlay::setStrokeWidth(qreal width) {
    if (m_strokeWidth != width) {
        m_strokeWidth = width;
        redraw();
        Q_EMIT strokeWidthChanged();
    }
}

void LiveSketchOverlay::setOrigin(QPointF origin) {
    if (m_layer->position() != origin) {
        m_layer->setPosition(origin);
        Q_EMIT originChanged();
    }
}

void LiveSketchOverlay::setZoom(qreal zoom) {
    if (m_layer->scale() != zoom) {
        m_layer->setScale(zoom);
        m_tail->setZoom(zoom);
        for (const auto &piece : m_pieces) {
            piece->setZoom(zoom);
        }
        Q_EMIT zoomChanged();
    }
}

void LiveSketchOverlay::redraw() {
    dropPieces();
    follow();
}

void LiveSketchOverlay::dropPieces() {
    m_pieces.clear();
    m_drawnFrozenPoints = 0;
}

/// At each change and not only before a frame: two pieces that freeze in one frame do not join end to end.
void LiveSketchOverlay::follow() {
    const std::size_t frozen = m_state ? m_state->frozenSmoothedPoints().size() : 0;
    if (frozen < m_drawnFrozenPoints) {
        dropPieces();
    }
    if (frozen > m_drawnFrozenPoints) {
        addPiece(std::span(m_state->frozenSmoothedPoints()).subspan(m_drawnFrozenPoints));
        m_drawnFrozenPoints = frozen;
    }
    polish();
}

void LiveSketchOverlay::addPiece(std::span<const QPointF> positions) {
    std::vector<SketchPoint> points;
    points.reserve(positions.size());
    for (const QPointF &position : positions) {
        points.push_back({.x = position.x(), .y = position.y()});
    }
    m_pieces.push_back(makePiece(m_layer));
    m_pieces.back()->setZoom(zoom());
    m_pieces.back()->setDrawing(drawingOf(points));
}

void LiveSketchOverlay::updatePolish() {
    const bool isDrawing = m_state && !m_state->currentStrokePoints().empty();
    m_tail->setDrawing(
        isDrawing ? drawingOf(SketchRenderer::smoothed(m_state->unfrozenTail(), LiveSketchState::kSamplesPerSegment))
                  : PathDrawing());
}

PathDrawing LiveSketchOverlay::drawingOf(std::span<const SketchPoint> points) const {
    return PathDrawing({SketchRenderer::smoothStroke(points, SketchRenderer::shownColor(m_color), m_strokeWidth)});
}

} // namespace tallowby
