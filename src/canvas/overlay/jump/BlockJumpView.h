#pragma once

#include "canvas/view/CanvasGlide.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "platform/NotificationCenter.h"

#include <QPointer>
#include <QQuickItem>

namespace tallowby {

/// Answers a request to show a block: glides the canvas there, selects the block and lets it pulse once. A block that
/// is not on this canvas is only gone to.
class BlockJumpView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::InfiniteCanvasView *canvas READ canvas WRITE setCanvas NOTIFY canvasChanged REQUIRED)
    /// The block's frame on screen while it pulses, before it is turned.
    Q_PROPERTY(QRectF frame READ frame NOTIFY frameChanged)
    /// Of the block, in degrees.
    Q_PROPERTY(qreal angle READ angle NOTIFY frameChanged)
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY pulse)

public:
    explicit BlockJumpView(QQuickItem *parent = nullptr);

    [[nodiscard]] InfiniteCanvasView *canvas() const { return m_canvas; }
    void setCanvas(InfiniteCanvasView *canvas);
    [[nodiscard]] QRectF frame() const;
    [[nodiscard]] qreal angle() const { return m_block ? m_block->rotation() : 0; }
    [[nodiscard]] bool reducesMotion() const { return m_canvas && m_canvas->prefersReducedMotion(); }

Q_SIGNALS:
    void canvasChanged();
    void frameChanged();
    void pulse();

private:
    void jump(const QVariantMap &target);

    QPointer<InfiniteCanvasView> m_canvas;
    BlockPtr m_block;
    CanvasGlide m_glide;
    /// Ends before what it calls.
    NotificationCenter::Observation m_jumps;
};

} // namespace tallowby
