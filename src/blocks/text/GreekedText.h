#pragma once

#include <QColor>
#include <QQuickItem>

namespace tallowby {

/// A text too small to be read, drawn as one bar for each of its lines: far cheaper than letters, and calmer. The bars
/// are opaque, so that those of all blocks are drawn together.
class GreekedText : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    /// Of the font, in points.
    Q_PROPERTY(qreal textSize READ textSize WRITE setTextSize NOTIFY textSizeChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

public:
    explicit GreekedText(QQuickItem *parent = nullptr);

    [[nodiscard]] const QString &text() const { return m_text; }
    void setText(const QString &text);
    [[nodiscard]] qreal textSize() const { return m_textSize; }
    void setTextSize(qreal size);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);

Q_SIGNALS:
    void textChanged();
    void textSizeChanged();
    void colorChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override;

private:
    [[nodiscard]] QList<QRectF> bars() const;

    QString m_text;
    qreal m_textSize = 0;
    QColor m_color;
};

} // namespace tallowby
