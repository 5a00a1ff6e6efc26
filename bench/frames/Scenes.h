#pragma once

#include "SceneFile.h"

#include <QStringList>

#include <optional>

namespace tallowby::bench {

/// The scenes of the frame benchmark, by name: "100" to "100000" are grids of so many blocks; "strokes" is one screen
/// of 500 sketches of one stroke, "sketch" the same strokes in one.
[[nodiscard]] QStringList sceneNames();
[[nodiscard]] std::optional<Scene> sceneByName(const QString &name);

} // namespace tallowby::bench
