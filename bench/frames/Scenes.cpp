#include "frames/Scenes.h"

namespace tallowby::bench {

namespace {

constexpr std::size_t kStrokeCount = 500;
const QString kStrokes = QStringLiteral("strokes");
const QString kSketch = QStringLiteral("sketch");

} // namespace

QStringList sceneNames() {
    return QStringLiteral("100 1000 5000 10000 100000").split(u' ') << kStrokes << kSketch;
}

std::optional<Scene> sceneByName(const QString &name) {
    if (!sceneNames().contains(name)) {
        return std::nullopt;
    }
    if (name == kStrokes) {
        return Scene{.kind = Scene::Kind::strokes, .blockCount = kStrokeCount};
    }
    if (name == kSketch) {
        return Scene{.kind = Scene::Kind::sketch, .blockCount = 1};
    }
    return Scene{.kind = Scene::Kind::grid, .blockCount = name.toULongLong()};
}

} // namespace tallowby::bench
