#pragma once

#include "canvas/view/InfiniteCanvasView.h"
#include "platform/Scheduler.h"

#include <QPointer>
#include <QQuickItem>

namespace tallowby {

/// A line over the canvas that says what has happened to something that was asked for, and goes again by itself.
class CanvasNoticeView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::InfiniteCanvasView *canvas READ canvas WRITE setCanvas NOTIFY canvasChanged REQUIRED)
    /// Stays while the line fades.
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)

public:
    static constexpr std::chrono::seconds kDuration{6};

    explicit CanvasNoticeView(QQuickItem *parent = nullptr);

    [[nodiscard]] InfiniteCanvasView *canvas() const { return m_canvas; }
    void setCanvas(InfiniteCanvasView *canvas);
    [[nodiscard]] const QString &text() const { return m_text; }
    [[nodiscard]] bool isShown() const { return m_hiding.isPending(); }

Q_SIGNALS:
    void canvasChanged();
    void textChanged();
    void isShownChanged();

private:
    void show(const QString &text);

    QPointer<InfiniteCanvasView> m_canvas;
    QString m_text;
    ScheduledCall m_hiding;
};

} // namespace tallowby
