#include "platform/scene/SceneGraph.h"

#include "platform/Log.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQuickWindow>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace tallowby {

namespace {

std::function<void(const QString &)> &errorHandler() {
    static std::function<void(const QString &)> handler;
    return handler;
}

/// The name of what draws by OpenGL here; none where nothing can.
std::optional<QByteArray> openGlRenderer() {
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    if (!context.create() || !context.makeCurrent(&surface)) {
        return std::nullopt;
    }
    return QByteArray(reinterpret_cast<const char *>(context.functions()->glGetString(GL_RENDERER)));
}

/// A render node does not mean that OpenGL uses it: the driver may be missing, or that of a virtual machine.
bool isImitation(const QByteArray &renderer) {
    constexpr std::array kImitations{"llvmpipe", "softpipe", "swrast", "SwiftShader"};
    return std::ranges::any_of(kImitations, [&renderer](const char *name) { return renderer.contains(name); });
}

bool canUseOpenGl(bool isChosen) {
    if (!isChosen && !hasGraphicsProcessor()) {
        return false;
    }
    const auto renderer = openGlRenderer();
    if (!renderer) {
        logLine(u"[SceneGraph] ⚠️ OpenGL cannot be used here, so windows are painted");
        return false;
    }
    return isChosen || !isImitation(*renderer);
}

} // namespace

void chooseSceneGraph() {
    const QByteArray chosen = qgetenv("QSG_RHI_BACKEND");
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND") || (!chosen.isEmpty() && !chosen.contains("gl"))) {
        return;
    }
    if (!canUseOpenGl(!chosen.isEmpty())) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

void onSceneGraphError(std::function<void(const QString &reason)> handler) {
    errorHandler() = std::move(handler);
}

void watchSceneGraph(QQuickWindow &window) {
    QObject::connect(
        &window, &QQuickWindow::sceneGraphError, &window,
        [](QQuickWindow::SceneGraphError, const QString &reason) {
            if (const auto handler = std::exchange(errorHandler(), nullptr)) {
                handler(reason);
            }
        },
        Qt::QueuedConnection);
}

bool sceneGraphHasShaders() {
    return QQuickWindow::sceneGraphBackend() != QLatin1StringView("software");
}

} // namespace tallowby
