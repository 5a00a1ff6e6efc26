#pragma once

#include <QImage>
#include <QRectF>

#include <vector>

namespace tallowby {

/// A block as the mini map shows it.
struct MiniMapMark {
    QRectF frame;
    QRgb color;
};

/// Each mark as a translucent rectangle of at least a pixel, later ones above earlier ones, with `area` filling the
/// picture. Takes a bounded time however the marks lie: under so many layers that the bound is reached, the lowest
/// ones could not be seen anyway.
[[nodiscard]] QImage paintMiniMap(const std::vector<MiniMapMark> &marks, const QRectF &area, QSize pixels);

} // namespace tallowby
