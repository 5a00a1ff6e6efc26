#pragma once

#include "canvas/container/BlockBody.h"

namespace tallowby {

/// The body of a divider: a rule that is thin, and never thinner than the screen can show.
class DividerBlockContent : public tallowby::BlockBody {
    Q_OBJECT
    QML_ELEMENT
    /// In pixels of the screen.
    Q_PROPERTY(int thickness READ thickness NOTIFY ruleChanged)
    /// In canvas points; at a whole pixel.
    Q_PROPERTY(double ruleTop READ ruleTop NOTIFY ruleChanged)
    Q_PROPERTY(double pixelsPerPoint READ pixelsPerPoint NOTIFY ruleChanged)

public:
    /// In canvas points, as near as pixels allow.
    static constexpr double kThickness = 1.5;

    using BlockBody::BlockBody;

    [[nodiscard]] int thickness() const { return m_thickness; }
    [[nodiscard]] double ruleTop() const { return m_ruleTop; }
    [[nodiscard]] double pixelsPerPoint() const { return m_pixelsPerPoint; }
    void setZoom(double zoom) override;

Q_SIGNALS:
    void ruleChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    void placeRule();

    int m_thickness = 1;
    double m_pixelsPerPoint = 1;
    double m_ruleTop = 0;
};

} // namespace tallowby
