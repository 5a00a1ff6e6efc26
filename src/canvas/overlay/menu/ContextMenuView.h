#pragma once

#include "canvas/overlay/menu/MenuEntriesModel.h"
#include "canvas/view/InfiniteCanvasView.h"

#include <QPointer>
#include <QQuickItem>

namespace tallowby {

/// The menu that opens over the canvas: what can be put there, or what can be done with a block. An item of the scene,
/// since no other window could come above the panel that the canvas is shown in. While it is open it has the keyboard
/// and the pointer; a press beside it closes it.
class ContextMenuView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::InfiniteCanvasView *canvas READ canvas WRITE setCanvas NOTIFY canvasChanged REQUIRED)
    /// Where it opened.
    Q_PROPERTY(QPointF point READ point NOTIFY levelsChanged)
    /// Null while it is closed.
    Q_PROPERTY(tallowby::MenuEntriesModel *entries READ entries NOTIFY levelsChanged)
    /// The opened children of a row of `entries`; null for none.
    Q_PROPERTY(tallowby::MenuEntriesModel *children READ children NOTIFY levelsChanged)

public:
    explicit ContextMenuView(QQuickItem *parent = nullptr);

    [[nodiscard]] InfiniteCanvasView *canvas() const { return m_canvas; }
    void setCanvas(InfiniteCanvasView *canvas);
    [[nodiscard]] QPointF point() const { return m_point; }
    [[nodiscard]] MenuEntriesModel *entries() const { return m_entries; }
    [[nodiscard]] MenuEntriesModel *children() const { return m_children; }

    /// What can be done with the block, or what can be put on the canvas when it is null.
    void openFor(QPointF point, Block *block);
    /// Nothing when it is closed.
    void close();

    /// The pointer is over a row of one of the two levels, at `point` of this item.
    Q_INVOKABLE void hover(tallowby::MenuEntriesModel *level, int row, QPointF point);
    /// Closes the menu and does what the row says, or opens its children.
    Q_INVOKABLE void choose(tallowby::MenuEntriesModel *level, int row);

    /// The top left of a panel of the given size that opens beside `aside`: right of it and downwards from its top, or
    /// to the other side where there is no room, and inside an area of the size `room` in any case.
    [[nodiscard]] Q_INVOKABLE static QPointF placed(QSizeF panel, const QRectF &aside, QSizeF room);

Q_SIGNALS:
    void canvasChanged();
    void levelsChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void open(QPointF point, std::vector<MenuEntry> entries);
    void openChildren();
    void enterChildren();
    void closeChildren();
    void handleKey(const QKeyEvent &event);

    QPointer<InfiniteCanvasView> m_canvas;
    QPointF m_point;
    QPointF m_pointer;
    MenuEntriesModel *m_entries = nullptr;
    MenuEntriesModel *m_children = nullptr;
};

} // namespace tallowby
