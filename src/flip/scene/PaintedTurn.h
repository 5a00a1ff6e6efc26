#pragma once

#include "flip/scene/BackdropView.h"
#include "flip/scene/FlipSceneView.h"

#include <QImage>
#include <QQuickItem>

#include <memory>

namespace tallowby {

/// The whole turn, backdrop and card, as one picture a frame that the processor paints: what is shown where the scene
/// graph has no graphics interface to turn the card with.
class PaintedTurn : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::FlipSceneView *scene READ scene WRITE setScene NOTIFY sceneChanged REQUIRED FINAL)
    Q_PROPERTY(tallowby::BackdropView *backdrop READ backdrop WRITE setBackdrop NOTIFY backdropChanged REQUIRED FINAL)

public:
    explicit PaintedTurn(QQuickItem *parent = nullptr);

    [[nodiscard]] FlipSceneView *scene() const { return m_scene; }
    void setScene(FlipSceneView *scene);
    [[nodiscard]] BackdropView *backdrop() const { return m_backdrop; }
    void setBackdrop(BackdropView *backdrop);

    /// The frame for what scene and backdrop are now, in device pixels.
    [[nodiscard]] const QImage &paintedFrame();

Q_SIGNALS:
    void sceneChanged();
    void backdropChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;

private:
    void forgetGround();
    void forgetCard();
    void prepareGround(QSize size);
    void prepareCard(QSize size);
    void paintCrossFade();
    void paintRotation();
    [[nodiscard]] QRect frontPlace() const;

    FlipSceneView *m_scene = nullptr;
    BackdropView *m_backdrop = nullptr;
    /// Both as large as the view. Kept from frame to frame, and only while a turn needs them.
    QImage m_ground;
    QImage m_card;
    /// The node on the window has it in common with the item, so that it is neither copied nor kept longer.
    const std::shared_ptr<QImage> m_frame = std::make_shared<QImage>();
};

} // namespace tallowby
