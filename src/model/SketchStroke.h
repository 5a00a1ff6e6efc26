#pragma once

#include <QString>

#include <vector>

namespace tallowby {

/// One point of a stroke, in canvas points.
struct SketchPoint {
    double x = 0;
    double y = 0;
    /// 1 for a device that tells no pressure.
    double pressure = 1;

    friend bool operator==(const SketchPoint &, const SketchPoint &) = default;
};

/// One free-hand line as it was drawn: not smoothed, which is for whoever paints it.
struct SketchStroke {
    std::vector<SketchPoint> points;
    /// "#" and six hexadecimal digits.
    QString color;
    /// In canvas points.
    double width = 0;

    friend bool operator==(const SketchStroke &, const SketchStroke &) = default;
};

} // namespace tallowby
