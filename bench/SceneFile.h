#pragma once

#include "model/Block.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace tallowby::bench {

/// What is on the canvas of a measurement. The same seed gives the same scene, ids included.
struct Scene {
    enum class Kind {
        /// A third sticky notes of 200 × 200, a third texts of about 40 characters, a third labelled rectangles, on a
        /// square grid with gaps of 60 points, centred on the origin.
        grid,
        /// The same with payloads that bring a record to about 1.1 KB.
        heavyGrid,
        /// Sketches of one curly stroke of 100 points each, all over one screen around the origin.
        strokes,
        /// The same with 500 such strokes in each sketch.
        sketch,
    };

    Kind kind = Kind::grid;
    std::size_t blockCount = 0;
    std::uint32_t seed = 1;
};

[[nodiscard]] std::vector<SharedBlockFields> sceneRecords(const Scene &scene);
/// Writes the scene as a block file; ends the program with a line when that fails.
void writeSceneFile(const Scene &scene, const QString &path);

} // namespace tallowby::bench
