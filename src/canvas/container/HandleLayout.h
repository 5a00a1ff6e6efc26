#pragma once

#include "canvas/container/ResizeGesture.h"

#include <QRectF>

#include <array>
#include <optional>
#include <variant>

namespace tallowby {

/// What turns a block.
struct RotationHandle {
    friend bool operator==(RotationHandle, RotationHandle) = default;
};
using BlockHandle = std::variant<Corner, RotationHandle>;

/// Where the handles of a selected block lie on screen, in points of the same size at every zoom.
class HandleLayout {
public:
    /// Between the block and its outline.
    static constexpr double kOutlineGap = 4;
    static constexpr double kHandleSize = 8;
    /// A handle takes a press within this square about its middle.
    static constexpr double kHitSize = 24;
    /// From the outline to the middle of the rotation handle.
    static constexpr double kRotationDistance = 24;
    static constexpr std::array kCorners{Corner::topLeft, Corner::topRight, Corner::bottomLeft, Corner::bottomRight};

    /// `frame` on screen, before it is turned about its middle by `rotation` degrees.
    HandleLayout(const QRectF &frame, double rotation);

    [[nodiscard]] QPointF middleOf(BlockHandle handle) const;
    /// The handle that a press at this point of the screen takes. The inside of a block stays free for moving it,
    /// however small the block is on screen.
    [[nodiscard]] std::optional<BlockHandle> handleAt(QPointF point) const;
    /// What a drag of the handle would do, in the direction in which the block's corner points on screen.
    [[nodiscard]] Qt::CursorShape cursorOf(BlockHandle handle) const;

private:
    [[nodiscard]] QRectF outline() const;

    QRectF m_frame;
    double m_rotation;
};

} // namespace tallowby
