#pragma once

#include <QRectF>

#include <vector>

namespace tallowby {

/// Where a bar floats beside what it belongs to. All in screen points of the view.
class ToolbarPlacement {
public:
    /// Between the bar and what it belongs to, or what it must not cover.
    static constexpr double kGap = 8;
    /// Between the bar and the edge of the view.
    static constexpr double kMargin = 8;

    /// The top left of a bar of that size: above the middle of `target`; below it where there is no room; else over it,
    /// in sight. It keeps clear of the obstacles, unless they leave no room at all. On whole points.
    [[nodiscard]] static QPointF placed(QSizeF bar, const QRectF &target, QSizeF view,
                                        const std::vector<QRectF> &obstacles);
};

} // namespace tallowby
