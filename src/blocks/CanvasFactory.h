#pragma once

#include "canvas/view/InfiniteCanvasView.h"

#include <memory>

class QQmlEngine;

namespace tallowby {

/// The canvas with the bodies of all kinds, ready to be put into a window; give it a parent item, a size and the focus.
/// Registers the QML types and the theme's pictures with the engine. Engine, model and notifications must outlive it.
[[nodiscard]] std::unique_ptr<InfiniteCanvasView> makeCanvasView(QQmlEngine &engine, CanvasViewModel &viewModel,
                                                                 NotificationCenter &notifications);

} // namespace tallowby
