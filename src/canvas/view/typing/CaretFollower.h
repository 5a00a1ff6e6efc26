#pragma once

#include <QPointer>
#include <QQuickItem>

namespace tallowby {

class InfiniteCanvasView;

/// Moves the paper so that whoever types sees the caret, with some room around it. Only keys and input methods make it
/// look: a click, a wheel or a drag means the place that it is at. A child of the canvas without looks.
class CaretFollower : public QQuickItem {
    Q_OBJECT

public:
    /// From the caret to the edge of the view, in points of the screen: more than the tools at the lower edge are high.
    static constexpr double kMargin = 80;

    explicit CaretFollower(InfiniteCanvasView &canvas);

    /// The item that has been opened for typing.
    void setInput(QQuickItem *input);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    /// With the frame that shows the letter, when all has its place.
    void updatePolish() override;

private:
    InfiniteCanvasView &m_canvas;
    QPointer<QQuickItem> m_input;
};

} // namespace tallowby
