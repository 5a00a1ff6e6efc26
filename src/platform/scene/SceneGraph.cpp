#include "platform/scene/SceneGraph.h"

#include <QQuickWindow>

namespace tallowby {

void chooseSceneGraph() {
    const bool isChosen = qEnvironmentVariableIsSet("QT_QUICK_BACKEND") || qEnvironmentVariableIsSet("QSG_RHI_BACKEND");
    if (!isChosen && !hasGraphicsProcessor()) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

bool sceneGraphHasShaders() {
    return QQuickWindow::sceneGraphBackend() != QLatin1StringView("software");
}

} // namespace tallowby
