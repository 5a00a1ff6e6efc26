#include "canvas/overlay/toolbar/ToolbarPlacement.h"

#include <algorithm>
#include <cmath>

namespace tallowby {

QPointF ToolbarPlacement::placed(QSizeF bar, const QRectF &target, QSizeF view, const std::vector<QRectF> &obstacles) {
    const QRectF room = QRectF({}, view).adjusted(kMargin, kMargin, -kMargin, -kMargin);
    const double lowest = std::max(room.top(), room.bottom() - bar.height());
    const double above = target.top() - kGap - bar.height();
    const double middle = std::round(target.center().x() - bar.width() / 2);
    const double x = std::clamp(middle, room.left(), std::max(room.left(), room.right() - bar.width()));

    // Over the target, as near to its upper edge as it can be seen.
    const double inSight = std::clamp(above, room.top(), lowest);
    std::vector<double> heights{above, target.bottom() + kGap, inSight, room.top()};
    for (const QRectF &obstacle : obstacles) {
        heights.push_back(obstacle.top() - kGap - bar.height());
        heights.push_back(obstacle.bottom() + kGap);
    }
    std::ranges::stable_sort(heights.begin() + 2, heights.end(), {},
                             [inSight](double y) { return std::abs(y - inSight); });
    const auto isFree = [&](double y) {
        const QRectF place({x, y}, bar);
        return y >= room.top() && y <= lowest &&
               std::ranges::none_of(obstacles, [&place](const QRectF &obstacle) { return obstacle.intersects(place); });
    };
    const auto free = std::ranges::find_if(heights, isFree);
    return {x, std::round(free == heights.end() ? room.top() : *free)};
}

} // namespace tallowby
