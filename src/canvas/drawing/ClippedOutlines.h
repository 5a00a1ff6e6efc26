#pragma once

#include "canvas/drawing/PathDrawing.h"

#include <QTransform>

namespace tallowby {

/// What of a drawing is seen in `view`, in the coordinates of that. The rasteriser takes no end with outlines that are
/// many times longer than the screen: here they are cut off a little beyond its edges. Pens keep their joins and caps;
/// dashes begin anew where an outline comes into view.
[[nodiscard]] PathDrawing clippedOutlines(const PathDrawing &drawing, const QTransform &toView, const QRectF &view);

} // namespace tallowby
