#include "blocks/CanvasFactory.h"

#include "blocks/BlockKinds.h"
#include "platform/theme/ThemeImageProvider.h"

#include <QQmlEngine>

void qml_register_types_Tallowby_Platform();
void qml_register_types_Tallowby_Model();
void qml_register_types_Tallowby_Canvas();
void qml_register_types_Tallowby_Blocks();

namespace tallowby {

namespace {

void prepare(QQmlEngine &engine) {
    qml_register_types_Tallowby_Platform();
    qml_register_types_Tallowby_Model();
    qml_register_types_Tallowby_Canvas();
    qml_register_types_Tallowby_Blocks();
    const QString modules = QStringLiteral("qrc:/qt/qml");
    if (!engine.importPathList().contains(modules)) {
        engine.addImportPath(modules);
    }
    ThemeImageProvider::install(engine);
}

} // namespace

std::unique_ptr<InfiniteCanvasView> makeCanvasView(QQmlEngine &engine, CanvasViewModel &viewModel,
                                                   NotificationCenter &notifications) {
    prepare(engine);
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/qt/qml/Tallowby/Canvas/InfiniteCanvas.qml")));
    std::unique_ptr<QObject> object(component.beginCreate(engine.rootContext()));
    auto *view = qobject_cast<InfiniteCanvasView *>(object.get());
    if (!view) {
        qFatal("The canvas could not be made: %s", qUtf8Printable(component.errorString()));
    }
    view->attach(viewModel, blockKinds(), notifications);
    component.completeCreate();
    QQmlEngine::setObjectOwnership(view, QQmlEngine::CppOwnership);
    object.release();
    return std::unique_ptr<InfiniteCanvasView>(view);
}

} // namespace tallowby
