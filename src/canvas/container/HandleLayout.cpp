#include "canvas/container/HandleLayout.h"

#include <QTransform>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// How far into the block the handles reach, and at most which share of its sides.
constexpr double kReachInside = 8;
constexpr double kShareInside = 0.25;

QRectF squareAbout(QPointF middle) {
    QRectF square(0, 0, HandleLayout::kHitSize, HandleLayout::kHitSize);
    square.moveCenter(middle);
    return square;
}

} // namespace

HandleLayout::HandleLayout(const QRectF &frame, double rotation)
    : m_frame(frame)
    , m_rotation(rotation) {}

QRectF HandleLayout::outline() const {
    return m_frame.adjusted(-kOutlineGap, -kOutlineGap, kOutlineGap, kOutlineGap);
}

QPointF HandleLayout::middleOf(BlockHandle handle) const {
    const QRectF box = outline();
    QPointF fromMiddle(0, -box.height() / 2 - kRotationDistance);
    if (const Corner *corner = std::get_if<Corner>(&handle)) {
        const QPointF direction = directionOf(*corner);
        fromMiddle = {direction.x() * box.width() / 2, direction.y() * box.height() / 2};
    }
    return box.center() + QTransform().rotate(m_rotation).map(fromMiddle);
}

std::optional<BlockHandle> HandleLayout::handleAt(QPointF point) const {
    const QPointF middle = m_frame.center();
    const QTransform back = QTransform().rotate(-m_rotation);
    const QPointF straight = middle + back.map(point - middle);
    const double insetX = std::min(kReachInside, m_frame.width() * kShareInside);
    const double insetY = std::min(kReachInside, m_frame.height() * kShareInside);
    if (m_frame.adjusted(insetX, insetY, -insetX, -insetY).contains(straight)) {
        return std::nullopt;
    }
    // From the last corner to the first: on a tiny block the squares overlap, and one grows most naturally down and
    // right.
    for (auto corner = kCorners.rbegin(); corner != kCorners.rend(); ++corner) {
        const QPointF place = middle + back.map(middleOf(*corner) - middle);
        if (squareAbout(place).contains(straight)) {
            return *corner;
        }
    }
    const QPointF place = middle + back.map(middleOf(RotationHandle{}) - middle);
    return squareAbout(place).contains(straight) ? std::optional<BlockHandle>(RotationHandle{}) : std::nullopt;
}

Qt::CursorShape HandleLayout::cursorOf(BlockHandle handle) const {
    const Corner *corner = std::get_if<Corner>(&handle);
    if (!corner) {
        // Turning follows the pointer sideways.
        return Qt::SizeHorCursor;
    }
    static constexpr std::array kShapes{Qt::SizeHorCursor, Qt::SizeFDiagCursor, Qt::SizeVerCursor, Qt::SizeBDiagCursor};
    const QPointF direction = directionOf(*corner);
    const double straight = direction.x() == direction.y() ? 45 : 135;
    const int eighths = int(std::lround(std::remainder(straight + m_rotation, 180) / 45));
    return kShapes[std::size_t((eighths + 4) % 4)];
}

} // namespace tallowby
