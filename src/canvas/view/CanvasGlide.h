#pragma once

#include <QObject>
#include <QPointer>
#include <QVariantAnimation>

namespace tallowby {

class InfiniteCanvasView;

/// Moves the paper of a canvas so that it is seen to move. Whoever takes hold of the paper meanwhile has it. Main
/// thread only.
class CanvasGlide : public QObject {
    Q_OBJECT

public:
    explicit CanvasGlide(QObject *parent = nullptr);

    void setCanvas(InfiniteCanvasView *canvas);
    /// Until the origin lies there, seen from the middle of the view in screen points; at once where less motion is
    /// wanted.
    void glideTo(QPointF offset);

private:
    QPointer<InfiniteCanvasView> m_canvas;
    QVariantAnimation m_animation;
};

} // namespace tallowby
