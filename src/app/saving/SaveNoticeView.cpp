#include "app/saving/SaveNoticeView.h"

#include "canvas/view/InfiniteCanvasView.h"
#include "storage/SaveStatus.h"

#include <QQmlComponent>
#include <QQmlEngine>

namespace tallowby {

void SaveNoticeView::install(QQmlEngine &engine, InfiniteCanvasView &canvas, SaveStatus &status) {
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/qt/qml/Tallowby/App/SaveNotice.qml")));
    auto *notice = qobject_cast<SaveNoticeView *>(component.beginCreate(engine.rootContext()));
    if (!notice) {
        qFatal("The line about saving could not be made: %s", qUtf8Printable(component.errorString()));
    }
    notice->setParent(&canvas);
    notice->m_status = &status;
    connect(&status, &SaveStatus::changed, notice, &SaveNoticeView::textChanged);
    notice->setParentItem(&canvas);
    component.completeCreate();
}

QString SaveNoticeView::text() const {
    return m_status ? m_status->text() : QString();
}

} // namespace tallowby
