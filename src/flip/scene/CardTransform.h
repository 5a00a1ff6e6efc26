#pragma once

#include <QMatrix4x4>
#include <QQuickTransform>
#include <QSizeF>
#include <qqmlintegration.h>

namespace tallowby {

/// Turns an item about its vertical centre line, as seen in perspective from in front of its centre. What is turned to
/// the right comes no nearer: a positive angle moves the right edge away from the viewer.
class CardTransform : public QQuickTransform {
    Q_OBJECT
    QML_ANONYMOUS

public:
    using QQuickTransform::QQuickTransform;

    /// Radians.
    void setAngle(double angle);
    /// Of the item, in its own coordinates.
    void setSize(QSizeF size);

    /// The turn in the item's coordinates, origin at the top left. Depth is flattened, so nothing is clipped away that
    /// comes towards the viewer: x, y and w are those of the full projection, z stays what it was.
    [[nodiscard]] static QMatrix4x4 matrix(double angle, QSizeF size);
    /// The perspective entry of the projection, −1/d for a viewer at d = 1.6 × the larger side; −0.0005 without a size.
    [[nodiscard]] static double m34(QSizeF size);

    void applyTo(QMatrix4x4 *matrix) const override;

private:
    void recompute();

    double m_angle = 0;
    QSizeF m_size;
    QMatrix4x4 m_matrix;
};

} // namespace tallowby
