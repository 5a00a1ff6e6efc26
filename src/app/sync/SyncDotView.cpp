#include "app/sync/SyncDotView.h"

#include "app/sync/SyncStatus.h"
#include "canvas/view/InfiniteCanvasView.h"

#include <QQmlComponent>
#include <QQmlEngine>

namespace tallowby {

void SyncDotView::install(QQmlEngine &engine, InfiniteCanvasView &canvas, SyncStatus &status) {
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/qt/qml/Tallowby/App/SyncDot.qml")));
    auto *dot = qobject_cast<SyncDotView *>(component.beginCreate(engine.rootContext()));
    if (!dot) {
        qFatal("The sync dot could not be made: %s", qUtf8Printable(component.errorString()));
    }
    QQmlEngine::setObjectOwnership(&status, QQmlEngine::CppOwnership);
    dot->setParent(&canvas);
    dot->m_status = &status;
    dot->setParentItem(&canvas);
    component.completeCreate();
}

} // namespace tallowby
