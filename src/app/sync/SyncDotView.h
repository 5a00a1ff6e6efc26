#pragma once

#include <QQuickItem>

class QQmlEngine;

namespace tallowby {

class InfiniteCanvasView;
class SyncStatus;

/// The quiet dot in the corner of the canvas; what it means comes up under the pointer.
class SyncDotView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::SyncStatus *status READ status CONSTANT)

public:
    using QQuickItem::QQuickItem;

    /// Makes the dot over a canvas, which owns it from then on. The status must outlive it.
    static void install(QQmlEngine &engine, InfiniteCanvasView &canvas, SyncStatus &status);

    [[nodiscard]] SyncStatus *status() const { return m_status; }

private:
    SyncStatus *m_status = nullptr;
};

} // namespace tallowby
