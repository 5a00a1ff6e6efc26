#pragma once

#include <QQuickItem>

class QQmlEngine;

namespace tallowby {

class InfiniteCanvasView;
class SaveStatus;

/// The line over the canvas that says that notes cannot be saved or read, for as long as that is so.
class SaveNoticeView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Empty while all is well.
    Q_PROPERTY(QString text READ text NOTIFY textChanged)

public:
    using QQuickItem::QQuickItem;

    /// Makes the line over a canvas, which owns it from then on. The status must outlive it.
    static void install(QQmlEngine &engine, InfiniteCanvasView &canvas, SaveStatus &status);

    [[nodiscard]] QString text() const;

Q_SIGNALS:
    void textChanged();

private:
    SaveStatus *m_status = nullptr;
};

} // namespace tallowby
