#pragma once

#include "canvas/container/BlockBody.h"
#include "canvas/view/InfiniteCanvasView.h"

#include <QPointer>
#include <QQuickItem>

#include <memory>
#include <optional>

namespace tallowby {

/// The frame around each visible block: puts the block's body at its place, size and angle, also while it is dragged,
/// settles the block to the size that the body measures, opens the body for editing and shows that the block is
/// selected. What the pointer does to a block is the tools' business.
class BlockContainerView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::InfiniteCanvasView *canvas READ canvas WRITE setCanvas NOTIFY canvasChanged REQUIRED)
    Q_PROPERTY(tallowby::Block *block READ block WRITE setBlock NOTIFY blockChanged REQUIRED)
    Q_PROPERTY(QAccessible::Role accessibleRole READ accessibleRole NOTIFY accessibleNameChanged)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY accessibleNameChanged)
    Q_PROPERTY(QString accessibleDescription READ accessibleDescription NOTIFY accessibleDescriptionChanged)

public:
    /// A measured size that differs by no more than this leaves the block's size alone.
    static constexpr double kSettlingThreshold = 0.5;

    using QQuickItem::QQuickItem;
    ~BlockContainerView() override;

    [[nodiscard]] InfiniteCanvasView *canvas() const { return m_canvas; }
    void setCanvas(InfiniteCanvasView *canvas);
    [[nodiscard]] Block *block() const { return m_block; }
    void setBlock(Block *block);
    [[nodiscard]] QAccessible::Role accessibleRole() const;
    /// The kind and how the text begins.
    [[nodiscard]] QString accessibleName() const;
    /// Where on the canvas.
    [[nodiscard]] QString accessibleDescription() const;

    /// Null only while the container is being made.
    [[nodiscard]] BlockBody *body() const { return m_body; }
    [[nodiscard]] bool isEditing() const { return m_body->isEditing(); }
    [[nodiscard]] bool isDragging() const { return m_isDragging; }
    /// From the block's stored place, in canvas points; zero while it is not dragged.
    [[nodiscard]] QPointF dragOffset() const { return m_dragOffset; }
    /// None ends the drag.
    void showDrag(std::optional<QPointF> dragOffset);
    /// Tells a screen reader about the block, as if it had the focus.
    void announce();

Q_SIGNALS:
    void canvasChanged();
    void blockChanged();
    void accessibleNameChanged();
    void accessibleDescriptionChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void createBody();
    void replaceBody();
    void followBlock();
    void followFocus();
    void letPointerIn(bool isEditing);
    void settle();
    void settleAtStart();
    void showSelection();
    void appear();
    [[nodiscard]] const BlockKind &kind() const;

    /// A container that has left the canvas may be deleted after it.
    QPointer<InfiniteCanvasView> m_canvas;
    Block *m_block = nullptr;
    BlockBody *m_body = nullptr;
    std::unique_ptr<QQuickItem> m_selectionOutline;
    bool m_isDragging = false;
    QPointF m_dragOffset;
    /// A block that has just been made is kept centred on the pointer when its first measure comes; only once.
    bool m_hasCenteredOnSpawn = true;
};

} // namespace tallowby
