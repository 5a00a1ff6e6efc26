#pragma once

#include "canvas/drawing/LiveSketchState.h"
#include "canvas/drawing/PathDrawing.h"

#include <QPointer>
#include <QQuickItem>

#include <memory>
#include <span>
#include <vector>

namespace tallowby {

class PathDrawingItem;

/// Draws the stroke that is being drawn over the canvas. Each frozen piece is an item of its own that never changes
/// again, so that a further point repaints no more than the tip.
class LiveSketchOverlay : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::LiveSketchState *state READ state WRITE setState NOTIFY stateChanged)
    /// As it will be stored.
    Q_PROPERTY(QString color READ color WRITE setColor NOTIFY colorChanged)
    /// In canvas points.
    Q_PROPERTY(qreal strokeWidth READ strokeWidth WRITE setStrokeWidth NOTIFY strokeWidthChanged)
    /// Where the canvas origin is drawn.
    Q_PROPERTY(QPointF origin READ origin WRITE setOrigin NOTIFY originChanged)
    Q_PROPERTY(qreal zoom READ zoom WRITE setZoom NOTIFY zoomChanged)

public:
    explicit LiveSketchOverlay(QQuickItem *parent = nullptr);
    ~LiveSketchOverlay() override;

    [[nodiscard]] LiveSketchState *state() const { return m_state; }
    void setState(LiveSketchState *state);
    [[nodiscard]] const QString &color() const { return m_color; }
    void setColor(const QString &color);
    [[nodiscard]] qreal strokeWidth() const { return m_strokeWidth; }
    void setStrokeWidth(qreal width);
    [[nodiscard]] QPointF origin() const { return m_layer->position(); }
    void setOrigin(QPointF origin);
    [[nodiscard]] qreal zoom() const { return m_layer->scale(); }
    void setZoom(qreal zoom);

Q_SIGNALS:
    void stateChanged();
    void colorChanged();
    void strokeWidthChanged();
    void originChanged();
    void zoomChanged();

protected:
    void updatePolish() override;

private:
    void redraw();
    void follow();
    void addPiece(std::span<const QPointF> positions);
    void dropPieces();
    [[nodiscard]] PathDrawing drawingOf(std::span<const SketchPoint> points) const;

    QPointer<LiveSketchState> m_state;
    QString m_color;
    qreal m_strokeWidth = 0;
    /// In canvas points; owned as a child, as are the items on it.
    QQuickItem *m_layer;
    std::vector<std::unique_ptr<PathDrawingItem>> m_pieces;
    std::unique_ptr<PathDrawingItem> m_tail;
    std::size_t m_drawnFrozenPoints = 0;
};

} // namespace tallowby
