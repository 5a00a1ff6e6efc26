#pragma once

#include <QLatin1StringView>

/// The names and user-info keys of the application-wide notifications. Their texts are part of the design.
namespace tallowby::events {

/// The hot key was pressed, or another way in asks for the same: turn over, or back.
inline constexpr QLatin1StringView flipToggleRequested{"flipToggleRequested"};
/// Asks for the turn to the canvas, whoever sends it.
inline constexpr QLatin1StringView flipTriggered{"flipTriggered"};
/// The canvas is up. User info: `screenFrameKey`, a QRectF in points.
inline constexpr QLatin1StringView flipComplete{"flipComplete"};
/// The turn back starts.
inline constexpr QLatin1StringView flipReversing{"flipReversing"};
/// The desktop is back and the window hidden.
inline constexpr QLatin1StringView flipClosed{"flipClosed"};
/// The canvas asks for the turn back.
inline constexpr QLatin1StringView canvasCloseRequested{"canvasCloseRequested"};
/// A canvas view is there to be shown. User info: `canvasViewKey`, a QQuickItem pointer.
inline constexpr QLatin1StringView canvasReady{"canvasReady"};
/// The hot key's code or modifiers were stored anew.
inline constexpr QLatin1StringView tallowbyHotkeyChanged{"tallowbyHotkeyChanged"};
/// Global keys have become available.
inline constexpr QLatin1StringView permissionsGranted{"tallowby.permissions.granted"};
/// A block is to be shown: the canvas goes there. User info: `jumpXKey` and `jumpYKey`, doubles in canvas points, and
/// `jumpIdKey`, the block's QUuid.
inline constexpr QLatin1StringView jumpToBlock{"jumpToBlock"};
/// Empty canvas was clicked: every block lets go of selection and editing.
inline constexpr QLatin1StringView deselectAllBlocks{"DeselectAllBlocks"};

inline constexpr QLatin1StringView screenFrameKey{"screenFrame"};
inline constexpr QLatin1StringView canvasViewKey{"canvasView"};
inline constexpr QLatin1StringView jumpXKey{"x"};
inline constexpr QLatin1StringView jumpYKey{"y"};
inline constexpr QLatin1StringView jumpIdKey{"id"};

} // namespace tallowby::events
