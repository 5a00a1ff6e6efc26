#pragma once

#include "canvas/container/HandleLayout.h"
#include "canvas/view/InfiniteCanvasView.h"

#include <QQuickItem>

namespace tallowby {

/// What is drawn over the selected blocks, in screen points: the handles of a single one, or the common outline of
/// several. One for the whole canvas, so that an unselected block has nothing of it.
class SelectionChromeView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::InfiniteCanvasView *canvas READ canvas WRITE setCanvas NOTIFY canvasChanged REQUIRED)
    Q_PROPERTY(bool areHandlesShown READ areHandlesShown NOTIFY changed)
    /// The middles of the handles.
    Q_PROPERTY(QPointF topLeft READ topLeft NOTIFY changed)
    Q_PROPERTY(QPointF topRight READ topRight NOTIFY changed)
    Q_PROPERTY(QPointF bottomLeft READ bottomLeft NOTIFY changed)
    Q_PROPERTY(QPointF bottomRight READ bottomRight NOTIFY changed)
    Q_PROPERTY(QPointF rotationHandle READ rotationHandle NOTIFY changed)
    /// Degrees.
    Q_PROPERTY(qreal angle READ angle NOTIFY changed)
    /// Around several selected blocks; empty when there are not several.
    Q_PROPERTY(QRectF groupFrame READ groupFrame NOTIFY changed)
    Q_PROPERTY(qreal handleSize MEMBER kHandleSize CONSTANT)
    Q_PROPERTY(qreal stemLength MEMBER kStemLength CONSTANT)

public:
    using QQuickItem::QQuickItem;

    [[nodiscard]] InfiniteCanvasView *canvas() const { return m_canvas; }
    void setCanvas(InfiniteCanvasView *canvas);
    [[nodiscard]] bool areHandlesShown() const { return m_layout.has_value(); }
    [[nodiscard]] QPointF topLeft() const { return middleOf(Corner::topLeft); }
    [[nodiscard]] QPointF topRight() const { return middleOf(Corner::topRight); }
    [[nodiscard]] QPointF bottomLeft() const { return middleOf(Corner::bottomLeft); }
    [[nodiscard]] QPointF bottomRight() const { return middleOf(Corner::bottomRight); }
    [[nodiscard]] QPointF rotationHandle() const { return middleOf(RotationHandle{}); }
    [[nodiscard]] qreal angle() const { return m_angle; }
    [[nodiscard]] QRectF groupFrame() const { return m_groupFrame; }

Q_SIGNALS:
    void canvasChanged();
    void changed();

protected:
    void componentComplete() override;
    void updatePolish() override;

private:
    static constexpr qreal kHandleSize = HandleLayout::kHandleSize;
    static constexpr qreal kStemLength = HandleLayout::kRotationDistance - HandleLayout::kHandleSize / 2;

    [[nodiscard]] bool isAnythingShown() const;
    [[nodiscard]] QPointF middleOf(BlockHandle handle) const;
    [[nodiscard]] QRectF frameOfGroup() const;

    InfiniteCanvasView *m_canvas = nullptr;
    std::optional<HandleLayout> m_layout;
    qreal m_angle = 0;
    QRectF m_groupFrame;
};

} // namespace tallowby
