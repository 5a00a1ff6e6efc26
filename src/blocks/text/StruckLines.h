#pragma once

#include <QList>
#include <QQuickItem>
#include <QRectF>

class QTextLayout;

namespace tallowby {

class BlockBody;

/// The lines through the text of the item that it is a child of, a `Text` or a `TextEdit`, anywhere in a body. A font's
/// own are painted without smoothing where there is no graphics processor, and vanish between the pixels when the
/// canvas is zoomed out; these are whole pixels thick at every zoom.
class StruckLines : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isStruck READ isStruck WRITE setIsStruck NOTIFY isStruckChanged)

public:
    /// A text of more lines is struck out as far as here.
    static constexpr int kMostLines = 2'000;

    explicit StruckLines(QQuickItem *parent = nullptr);

    [[nodiscard]] bool isStruck() const { return m_isStruck; }
    void setIsStruck(bool isStruck);
    /// One for each line of the text, in points of the text's item.
    [[nodiscard]] QList<QRectF> lines() const;

Q_SIGNALS:
    void isStruckChanged();

protected:
    void componentComplete() override;
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override;

private:
    void follow();
    void addLines(QList<QRectF> &lines, const QTextLayout &layout, QPointF origin) const;

    bool m_isStruck = false;
    bool m_isFollowing = false;
    /// The body that the text stands in.
    const BlockBody *m_body = nullptr;
};

} // namespace tallowby
