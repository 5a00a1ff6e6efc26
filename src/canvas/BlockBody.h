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
    Q_PROPERTY(bool isEditing READ isEditing NOTIFY isEditingChanged)
    /// The size that the body takes by itself, to which the container settles the block; a body that takes the size
    /// that it is given leaves it alone.
    Q_PROPERTY(QSizeF measuredSize READ measuredSize WRITE setMeasuredSize NOTIFY measuredSizeChanged)

public:
    using QQuickItem::QQuickItem;

    void attach(Block &block, CanvasViewModel &viewModel, const BlockKind &kind);
    [[nodiscard]] Block *block() const { return m_block; }
    [[nodiscard]] QString kindName() const { return m_kind->name; }
    [[nodiscard]] QString kindSymbol() const { return m_kind->symbol; }

    [[nodiscard]] bool isEditing() const { return m_isEditing; }
    virtual void setIsEditing(bool isEditing);
    [[nodiscard]] QSizeF measuredSize() const { return m_measuredSize; }
    void setMeasuredSize(QSizeF size);

    /// The item that takes keys and input methods while the body is edited, or null.
    [[nodiscard]] virtual QQuickItem *inputItem() const { return nullptr; }
    /// Puts the caret where the point is, in the body's coordinates.
    virtual void placeCaret(QPointF) {}

Q_SIGNALS:
    void isEditingChanged();
    void measuredSizeChanged();

protected:
    [[nodiscard]] CanvasViewModel &viewModel() const { return *m_viewModel; }

private:
    Block *m_block = nullptr;
    CanvasViewModel *m_viewModel = nullptr;
    const BlockKind *m_kind = nullptr;
    bool m_isEditing = false;
    QSizeF m_measuredSize;
};

} // namespace tallowby
