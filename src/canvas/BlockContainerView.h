#pragma once

#include "canvas/BlockBody.h"
#include "canvas/InfiniteCanvasView.h"

#include <QQuickItem>

#include <memory>

namespace tallowby {

/// The frame around each visible block: puts the block's body at its place, size and angle, settles the block to the
/// size that the body measures, opens the body for editing and shows that the block is selected.
class BlockContainerView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::InfiniteCanvasView *canvas READ canvas WRITE setCanvas NOTIFY canvasChanged REQUIRED)
    Q_PROPERTY(tallowby::Block *block READ block WRITE setBlock NOTIFY blockChanged REQUIRED)
    Q_PROPERTY(QAccessible::Role accessibleRole READ accessibleRole CONSTANT)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY accessibleNameChanged)

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

    [[nodiscard]] BlockBody *body() const { return m_body; }
    [[nodiscard]] bool isEditing() const { return m_body && m_body->isEditing(); }

Q_SIGNALS:
    void canvasChanged();
    void blockChanged();
    void accessibleNameChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void createBody();
    void followBlock();
    void followFocus();
    void settle();
    void showSelection();
    void growIn();
    [[nodiscard]] const BlockKind &kind() const;

    InfiniteCanvasView *m_canvas = nullptr;
    Block *m_block = nullptr;
    BlockBody *m_body = nullptr;
    std::unique_ptr<QQuickItem> m_selectionOutline;
    /// A block that has just been made is kept centred on the pointer when its first measure comes; only once.
    bool m_hasCenteredOnSpawn = true;
};

} // namespace tallowby
