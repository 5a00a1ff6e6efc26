#pragma once

#include <QColor>
#include <QQmlEngine>
#include <QQuickItem>

namespace tallowby {

/// A thin dashed rectangle. Only what lies within its parent is drawn, however large it is.
class DashedOutline : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

public:
    explicit DashedOutline(QQuickItem *parent = nullptr);

    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    /// The dashes along the edges of `outline`, as far as they touch `room`.
    [[nodiscard]] static QList<QRectF> dashes(const QRectF &outline, const QRectF &room);

Q_SIGNALS:
    void colorChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;

private:
    QColor m_color;
};

} // namespace tallowby
