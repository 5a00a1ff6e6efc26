#pragma once

#include "canvas/BlockKindRegistry.h"
#include "canvas/CanvasViewModel.h"
#include "model/Block.h"

#include <QQuickItem>

namespace tallowby {

/// What a container shows of its block: the base of all bodies. The container gives it the block before its bindings
/// are evaluated, and sizes it to the block.
class BlockBody : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::Block *block READ block CONSTANT)
    Q_PROPERTY(QString kindName READ kindName CONSTANT)
    Q_PROPERTY(QString kindSymbol READ kindSymbol CONSTANT)
    /// Whether the body's text can be read at the zoom in use; one that cannot is drawn as lines.
    Q_PROPERTY(bool isLegible READ isLegible NOTIFY isLegibleChanged)
    Q_PROPERTY(bool isEditing READ isEditing NOTIFY isEditingChanged)
    /// The size that the body takes by itself, to which the container settles the block; a body that takes the size
    /// that it is given leaves it alone.
    Q_PROPERTY(QSizeF measuredSize READ measuredSize WRITE setMeasuredSize NOTIFY measuredSizeChanged)

public:
    /// In screen points, the height of a font.
    static constexpr double kSmallestLegibleSize = 5;

    using QQuickItem::QQuickItem;

    void attach(Block &block, CanvasViewModel &viewModel, const BlockKind &kind);
    [[nodiscard]] Block *block() const { return m_block; }
    [[nodiscard]] QString kindName() const { return m_kind->name; }
    [[nodiscard]] QString kindSymbol() const { return m_kind->symbol; }

    [[nodiscard]] bool isLegible() const { return m_isLegible; }
    void setZoom(double zoom);
    [[nodiscard]] bool isEditing() const { return m_isEditing; }
    virtual void setIsEditing(bool isEditing);
    [[nodiscard]] QSizeF measuredSize() const { return m_measuredSize; }
    void setMeasuredSize(QSizeF size);

    /// The item that takes keys and input methods while the body is edited, or null.
    [[nodiscard]] virtual QQuickItem *inputItem() const { return nullptr; }
    /// Puts the caret where the point is, in the body's coordinates.
    virtual void placeCaret(QPointF) {}

Q_SIGNALS:
    void isLegibleChanged();
    void isEditingChanged();
    void measuredSizeChanged();

protected:
    [[nodiscard]] CanvasViewModel &viewModel() const { return *m_viewModel; }
    /// Of the text that a person comes to read, in canvas points.
    [[nodiscard]] virtual double textSize() const;
    void updateIsLegible();

private:
    Block *m_block = nullptr;
    CanvasViewModel *m_viewModel = nullptr;
    const BlockKind *m_kind = nullptr;
    double m_zoom = 1;
    bool m_isLegible = true;
    bool m_isEditing = false;
    QSizeF m_measuredSize;
};

} // namespace tallowby
