#pragma once

#include "canvas/view/InfiniteCanvasView.h"

#include <QPointer>
#include <QQuickItem>

namespace tallowby {

/// Lies unseen above all blocks and says, each time the canvas is panned or zoomed, that the whole of it is to be
/// painted.
///
/// Qt Quick's own painter keeps the area to be painted as a union of rectangles. When everything moves it adds those of
/// hundreds of blocks one by one, which takes three times as long as painting them; with the whole area known before
/// the first block is looked at, there is nothing to add. With a graphics processor this draws nothing and costs
/// nothing.
class WholeRepaint : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::InfiniteCanvasView *canvas READ canvas WRITE setCanvas NOTIFY canvasChanged REQUIRED)

public:
    explicit WholeRepaint(QQuickItem *parent = nullptr);

    [[nodiscard]] InfiniteCanvasView *canvas() const { return m_canvas; }
    void setCanvas(InfiniteCanvasView *canvas);

Q_SIGNALS:
    void canvasChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override;

private:
    QPointer<InfiniteCanvasView> m_canvas;
};

} // namespace tallowby
