#pragma once

namespace tallowby {

/// Chooses how windows are drawn: by the graphics processor, or, where the machine has none, by Qt Quick's own painter,
/// which draws only what has changed. A renderer that imitates a graphics processor would redraw the whole screen for
/// every letter. What the user set in QT_QUICK_BACKEND or QSG_RHI_BACKEND stays. Before the first window is made.
void chooseSceneGraph();

/// False where the scene graph paints without a graphics interface: shaders and geometry of one's own draw nothing
/// there.
[[nodiscard]] bool sceneGraphHasShaders();

/// Whether the machine has a graphics processor that this user may use.
[[nodiscard]] bool hasGraphicsProcessor();

} // namespace tallowby
