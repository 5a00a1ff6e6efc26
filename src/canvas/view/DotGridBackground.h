#pragma once

#include <QColor>
#include <QQuickItem>

namespace tallowby {

/// The lattice of dots on the paper, anchored to the canvas. Below zoom 0.5 only every second dot is drawn, further out
/// every fourth. Panning moves one node; the dots are made anew only when the zoom or the size changes. Takes no input.
class DotGridBackground : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QPointF origin READ origin WRITE setOrigin NOTIFY originChanged)
    Q_PROPERTY(qreal zoom READ zoom WRITE setZoom NOTIFY zoomChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

public:
    /// In canvas points.
    static constexpr double kSpacing = 24;
    static constexpr double kDotSize = 1.2;

    explicit DotGridBackground(QQuickItem *parent = nullptr);

    [[nodiscard]] QPointF origin() const { return m_origin; }
    void setOrigin(QPointF origin);
    [[nodiscard]] qreal zoom() const { return m_zoom; }
    void setZoom(qreal zoom);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);

    /// Between two drawn dots, in screen points.
    [[nodiscard]] static double drawnSpacing(double zoom);

Q_SIGNALS:
    void originChanged();
    void zoomChanged();
    void colorChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override;

private:
    QPointF m_origin;
    qreal m_zoom = 1.0;
    QColor m_color;
};

} // namespace tallowby
