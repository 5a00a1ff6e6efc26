#include "canvas/overlay/minimap/MiniMapPicture.h"

#include <algorithm>
#include <cmath>
#include <ranges>

namespace tallowby {

namespace {

constexpr double kMarkOpacity = 0.4;
/// A few milliseconds.
constexpr qint64 kMostPixels = 8'000'000;

QRgb translucent(QRgb color) {
    return qPremultiply(
        qRgba(qRed(color), qGreen(color), qBlue(color), int(std::lround(kMarkOpacity * qAlpha(color)))));
}

/// `part` is no number when the area is empty or larger than numbers go.
int pixelAt(double part, int count) {
    return part > 0 ? int(std::min(part, 1.0) * count) : 0;
}

/// Adds a premultiplied colour below what the pixel has already.
void addBelow(QRgb &pixel, QRgb color) {
    const auto rest = unsigned(255 - qAlpha(pixel));
    const auto part = [rest](int value) { return int((unsigned(value) * rest + 127) / 255); };
    pixel += qRgba(part(qRed(color)), part(qGreen(color)), part(qBlue(color)), part(qAlpha(color)));
}

} // namespace

QImage paintMiniMap(const std::vector<MiniMapMark> &marks, const QRectF &area, QSize pixels) {
    QImage picture(pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    const auto column = [&](double x) { return pixelAt((x - area.left()) / area.width(), pixels.width()); };
    const auto row = [&](double y) { return pixelAt((y - area.top()) / area.height(), pixels.height()); };
    qint64 painted = 0;
    for (const MiniMapMark &mark : marks | std::views::reverse) {
        const int left = std::min(column(mark.frame.left()), pixels.width() - 1);
        const int right = std::max(column(mark.frame.right()), left + 1);
        const int top = std::min(row(mark.frame.top()), pixels.height() - 1);
        const int bottom = std::max(row(mark.frame.bottom()), top + 1);
        const QRgb color = translucent(mark.color);
        for (int y = top; y < bottom; ++y) {
            auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
            std::for_each(line + left, line + right, [color](QRgb &pixel) { addBelow(pixel, color); });
        }
        painted += qint64(right - left) * (bottom - top);
        if (painted > kMostPixels) {
            break;
        }
    }
    return picture;
}

} // namespace tallowby
