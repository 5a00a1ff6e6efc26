#pragma once

#include "canvas/container/BlockBody.h"

namespace tallowby {

class PathDrawingItem;

/// The body of a divider: a rule from end to end, on whole pixels and never thinner than the screen can show.
class DividerBlockContent : public tallowby::BlockBody {
    Q_OBJECT
    QML_ELEMENT

public:
    /// In canvas points, as near as pixels allow.
    static constexpr double kThickness = 2;

    explicit DividerBlockContent(QQuickItem *parent = nullptr);

    /// What the payload keeps, within what a rule can be.
    [[nodiscard]] static double thicknessOf(const Block &block);
    static void setThickness(CanvasViewModel &model, Block &block, double thickness);

    void setZoom(double zoom) override;
    void settleZoom() override;

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void updatePolish() override;

private:
    /// Owned as a child.
    PathDrawingItem *m_rule;
};

} // namespace tallowby
