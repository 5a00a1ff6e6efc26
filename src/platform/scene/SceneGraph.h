#pragma once

#include <QString>

#include <functional>

class QQuickWindow;

namespace tallowby {

/// Chooses how windows are drawn: by the graphics processor, or, where there is none that works, by Qt Quick's own
/// painter, which draws only what has changed. A renderer that imitates a graphics processor would redraw the whole
/// screen for every letter. What the user set in QT_QUICK_BACKEND or QSG_RHI_BACKEND stays, unless nothing could be
/// drawn with it. After the application object is made, and before the first window is.
void chooseSceneGraph();

/// Calls `handler` once, with the reason, when one of the watched windows cannot be drawn. Unwatched, it would abort
/// the program. Main thread only.
void onSceneGraphError(std::function<void(const QString &reason)> handler);
void watchSceneGraph(QQuickWindow &window);

/// False where the scene graph paints without a graphics interface: shaders and geometry of one's own draw nothing
/// there.
[[nodiscard]] bool sceneGraphHasShaders();

/// Whether the machine has a graphics processor that this user may use.
[[nodiscard]] bool hasGraphicsProcessor();

} // namespace tallowby
