#pragma once

#include "canvas/drawing/PathDrawing.h"
#include "model/SketchStroke.h"

#include <QColor>

#include <span>
#include <vector>

namespace tallowby {

/// How strokes of the pencil look. Kept are the raw points; they are smoothed when they are drawn.
class SketchRenderer {
public:
    static constexpr int kSamplesPerSegment = 8;
    /// Of one stroke; a record may claim any number.
    static constexpr std::size_t kMostPoints = 100'000;

    /// Points on the uniform Catmull-Rom curve through `points`, `samplesPerSegment` for each step from one to the next
    /// and the last point at the end; the pressure goes from one to the next in a straight line. Fewer than three
    /// points come back as they are.
    [[nodiscard]] static std::vector<SketchPoint> smoothed(std::span<const SketchPoint> points, int samplesPerSegment);

    /// A stroke smoothed, seen from `origin`: a line with round ends, whose width follows the pressure where any point
    /// has been pressed less than fully.
    [[nodiscard]] static PathLayer stroke(std::span<const SketchPoint> points, const QColor &color, double width,
                                          QPointF origin);
    /// The same through points that are smoothed already.
    [[nodiscard]] static PathLayer smoothStroke(std::span<const SketchPoint> points, const QColor &color, double width);

    /// The colour in which lines of a stored colour are shown: a grey that would be lost on the ground becomes ink, and
    /// so does what is no "#" and six hex digits.
    [[nodiscard]] static QColor shownColor(const QString &chosen);
    /// As it may be drawn, in points.
    [[nodiscard]] static double boundedWidth(double width);
};

} // namespace tallowby
