#pragma once

#include "model/BlockType.h"

#include <QPainterPath>

namespace tallowby {

/// The outlines of the shapes: each a function from the rectangle that it fills to a path.
struct SpeechBubbleShape {
    static constexpr double kTallestTail = 16;
    static constexpr double kLargestRadius = 14;
    [[nodiscard]] static double tailHeight(const QRectF &rect);
    /// Of the corners of the body.
    [[nodiscard]] static double cornerRadius(const QRectF &body);
    [[nodiscard]] static QPainterPath path(const QRectF &rect);
};

struct TriangleShape {
    [[nodiscard]] static QPainterPath path(const QRectF &rect);
};

struct DiamondShape {
    [[nodiscard]] static QPainterPath path(const QRectF &rect);
};

/// From x = 0 to the width of the rectangle, wherever that lies.
struct LineShape {
    [[nodiscard]] static QPainterPath path(const QRectF &rect);
};

/// A line with a head of two legs that are always of the same length; it points to the right.
struct ArrowShape {
    static constexpr double kHeadLength = 15;
    static constexpr double kHeadHalfWidth = 10;
    [[nodiscard]] static QPainterPath path(const QRectF &rect);
};

/// A rectangle whose sides run into its corners without a break in their curvature.
[[nodiscard]] QPainterPath continuousRoundedRect(const QRectF &rect, double radius);

[[nodiscard]] QPainterPath shapeOutline(ShapeType shape, const QRectF &rect);
/// Open outlines have nothing to fill.
[[nodiscard]] bool isFilled(ShapeType shape);

} // namespace tallowby
