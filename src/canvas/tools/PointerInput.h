#pragma once

#include <QPointF>
#include <Qt>

namespace tallowby {

/// One moment of a mouse, a pen or a finger.
struct PointerInput {
    /// In points, relative to the view.
    QPointF screen;
    /// The same place in canvas points.
    QPointF canvas;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    /// Of a pen, from 0 to 1; everything else presses fully.
    double pressure = 1;
};

} // namespace tallowby
