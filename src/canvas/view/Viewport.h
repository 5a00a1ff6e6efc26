#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace tallowby {

/// What part of the infinite plane a view shows. A canvas point P is drawn at the screen point
/// S = view centre + offset + scale × P, y downwards. Screen points are relative to the view. Arithmetic only: it needs
/// no window.
class Viewport {
public:
    static constexpr double kMinZoom = 0.25;
    static constexpr double kMaxZoom = 3.0;
    static constexpr double kZoomStep = 1.2;
    /// Pans of up to this many screen points reuse the last culling pass, whose margin hides the difference.
    static constexpr double kCullingDistance = 120;

    [[nodiscard]] QSizeF size() const { return m_size; }
    /// Where the canvas origin is drawn, relative to the view's centre.
    [[nodiscard]] QPointF offset() const { return m_offset; }
    /// Screen points per canvas point.
    [[nodiscard]] double scale() const { return m_scale; }

    [[nodiscard]] QPointF center() const { return {m_size.width() / 2, m_size.height() / 2}; }
    /// Where the canvas origin is drawn.
    [[nodiscard]] QPointF origin() const { return center() + m_offset; }
    [[nodiscard]] QPointF toScreen(QPointF canvasPoint) const { return origin() + m_scale * canvasPoint; }
    [[nodiscard]] QPointF toCanvas(QPointF screenPoint) const { return (screenPoint - origin()) / m_scale; }
    /// In canvas points.
    [[nodiscard]] QRectF visibleRect() const { return {toCanvas({0, 0}), m_size / m_scale}; }

    /// Each of these says whether anything changed.
    bool setSize(QSizeF size);
    /// Keeps the canvas point at the view's centre where it is. Clamped; what is no finite number changes nothing.
    bool setScale(double scale);
    /// Keeps the canvas point under `screenPoint` where it is.
    bool zoomAroundScreenPoint(QPointF screenPoint, double factor);
    bool pan(QPointF screenDelta);

    /// True when the last culling pass no longer covers what is shown.
    [[nodiscard]] bool needsCulling() const;
    void noteCulled();

private:
    bool zoomTo(double scale, QPointF fixedPoint);

    QSizeF m_size;
    QPointF m_offset;
    double m_scale = 1.0;

    QPointF m_lastVisibilityOffset;
    QSizeF m_lastVisibilitySize;
    double m_lastVisibilityScale = 0;
};

} // namespace tallowby
