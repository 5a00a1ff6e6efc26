#include "flip/scene/SceneGraph.h"

#include <QQuickWindow>

namespace tallowby {

bool sceneGraphHasShaders() {
    return QQuickWindow::sceneGraphBackend() != QLatin1StringView("software");
}

} // namespace tallowby
