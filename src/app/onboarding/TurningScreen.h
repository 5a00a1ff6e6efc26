#pragma once

#include <QQuickPaintedItem>

namespace tallowby {

/// The program's illustration, drawn in ink: a screen on a desk that turns over like a card, its desktop in front and
/// the paper on its back.
class TurningScreen : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// How far it is turned: 0 shows the desktop, 1 the paper.
    Q_PROPERTY(qreal turn READ turn WRITE setTurn NOTIFY turnChanged)

public:
    explicit TurningScreen(QQuickItem *parent = nullptr);

    [[nodiscard]] qreal turn() const { return m_turn; }
    void setTurn(qreal turn);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void turnChanged();

private:
    qreal m_turn = 0;
};

} // namespace tallowby
