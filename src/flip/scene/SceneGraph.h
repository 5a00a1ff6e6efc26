#pragma once

namespace tallowby {

/// False where the scene graph paints without a graphics interface; shaders then draw nothing.
[[nodiscard]] bool sceneGraphHasShaders();

} // namespace tallowby
