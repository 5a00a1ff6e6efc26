#pragma once

#include <QPointer>
#include <QQuickItem>

namespace tallowby {

/// Presents an existing item unchanged and as large as itself. It takes the item in as a child; it never owns it. An
/// item that another parent takes is let go.
class CanvasWrapper : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *view READ view WRITE setView NOTIFY viewChanged FINAL)

public:
    using QQuickItem::QQuickItem;
    ~CanvasWrapper() override;

    [[nodiscard]] QQuickItem *view() const { return m_view; }
    void setView(QQuickItem *view);

Q_SIGNALS:
    void viewChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    QPointer<QQuickItem> m_view;
};

} // namespace tallowby
