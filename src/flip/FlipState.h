#pragma once

#include <QObject>
#include <qqmlintegration.h>

namespace tallowby {

namespace FlipStates {

Q_NAMESPACE
QML_NAMED_ELEMENT(FlipState)

/// Where the screen stands between desktop and canvas.
enum class FlipState {
    idle = 0,      ///< the desktop shows; the window is hidden or not yet made
    animating = 1, ///< the turn to the canvas runs
    showing = 2,   ///< the canvas is up
    closing = 3,   ///< the turn back runs
};
Q_ENUM_NS(FlipState)

} // namespace FlipStates
using FlipState = FlipStates::FlipState;

} // namespace tallowby
