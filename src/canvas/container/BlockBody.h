#pragma once

#include "canvas/model/BlockKindRegistry.h"
#include "canvas/model/CanvasViewModel.h"
#include "canvas/overlay/menu/MenuEntriesModel.h"
#include "model/Block.h"

#include <QQuickItem>

#include <optional>

namespace tallowby {

class InfiniteCanvasView;

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
    /// Pixels per canvas point that pictures in the body have: as many as the screen shows, once the zoom has settled.
    /// While it changes they keep what they have, from one to two for each that is shown, so that a zoom does not make
    /// each of them anew with every frame.
    Q_PROPERTY(qreal detail READ detail NOTIFY detailChanged)
    /// Whether a canvas point is another length than a point of the screen.
    Q_PROPERTY(bool isScaled READ isScaled NOTIFY isScaledChanged)
    Q_PROPERTY(bool isEditing READ isEditing NOTIFY isEditingChanged)
    /// The size that the body takes by itself, to which the container settles the block; a body that takes the size
    /// that it is given leaves it alone.
    Q_PROPERTY(QSizeF measuredSize READ measuredSize WRITE setMeasuredSize NOTIFY measuredSizeChanged)

public:
    /// In screen points, the height of a font.
    static constexpr double kSmallestLegibleSize = 5;

    using QQuickItem::QQuickItem;

    void attach(Block &block, InfiniteCanvasView &canvas, const BlockKind &kind);
    [[nodiscard]] Block *block() const { return m_block; }
    [[nodiscard]] QString kindName() const { return m_kind->name; }
    [[nodiscard]] QString kindSymbol() const { return m_kind->symbol; }

    [[nodiscard]] bool isLegible() const { return m_isLegible; }
    /// Whether the text has become large enough to be read and is still drawn as lines: many at once would take longer
    /// than a frame, and the canvas has some of them changed with each.
    [[nodiscard]] bool isLegibilityDue() const { return !m_isLegible && isTextLegible(); }
    void updateIsLegible();
    /// Screen points per canvas point.
    [[nodiscard]] double zoom() const { return m_zoom; }
    virtual void setZoom(double zoom);
    [[nodiscard]] double detail() const { return m_detail; }
    [[nodiscard]] bool isScaled() const { return m_zoom != 1; }
    /// The zoom has stood still for a moment: what is drawn for one zoom only may be made anew.
    virtual void settleZoom();
    [[nodiscard]] bool isEditing() const { return m_isEditing; }
    virtual void setIsEditing(bool isEditing);
    /// Whether items in the body take the pointer while it is not edited. Without, none of them is asked.
    [[nodiscard]] virtual bool takesPointerAtRest() const { return false; }
    [[nodiscard]] QSizeF measuredSize() const { return m_measuredSize; }
    void setMeasuredSize(QSizeF size);
    /// Whether the block may have no other size than the measured one.
    [[nodiscard]] bool insistsOnSize() const { return m_insistsOnSize; }

    /// The item that takes keys and input methods while the body is edited, or null.
    [[nodiscard]] virtual QQuickItem *inputItem() const { return nullptr; }
    /// A click on a body that is not edited, in its coordinates. True when it did something there; otherwise the click
    /// selects or opens the block.
    [[nodiscard]] virtual bool click(QPointF, Qt::KeyboardModifiers) { return false; }
    /// What the pointer looks like over a body that is not edited; none for what the tool shows.
    [[nodiscard]] virtual std::optional<Qt::CursorShape> cursorAt(QPointF, Qt::KeyboardModifiers) const {
        return std::nullopt;
    }
    /// Puts the caret where the point is, in the body's coordinates.
    virtual void placeCaret(QPointF) {}
    /// What a screen reader says after the name of the kind.
    [[nodiscard]] virtual QString spokenText() const { return m_block->rawTextOrEmpty(); }
    /// What a second click or Return does where nothing is typed. False when that is nothing.
    virtual bool activate() { return false; }
    /// Files were dropped on the block. False when the body has no place for them.
    virtual bool dropFiles(const QList<QUrl> &) { return false; }
    /// What the menu offers for this block and no other kind.
    [[nodiscard]] virtual std::vector<MenuEntry> menuEntries() { return {}; }

Q_SIGNALS:
    void isLegibleChanged();
    void detailChanged();
    void isScaledChanged();
    void isEditingChanged();
    void measuredSizeChanged();

protected:
    [[nodiscard]] InfiniteCanvasView &canvas() const { return *m_canvas; }
    [[nodiscard]] CanvasViewModel &viewModel() const { return *m_viewModel; }
    /// Of the text that a person comes to read, in canvas points.
    [[nodiscard]] virtual double textSize() const;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    /// The measured size of a body that would cut what it shows, or leave a gap: asked for again whenever the block has
    /// been given another size.
    void insistOnSize(QSizeF size);

private:
    [[nodiscard]] bool isTextLegible() const { return textSize() * m_zoom >= kSmallestLegibleSize; }
    [[nodiscard]] double exactDetail() const;
    void updateDetail();
    void setDetail(double detail);

    Block *m_block = nullptr;
    InfiniteCanvasView *m_canvas = nullptr;
    CanvasViewModel *m_viewModel = nullptr;
    const BlockKind *m_kind = nullptr;
    double m_zoom = 1;
    double m_detail = 1;
    bool m_hasDetail = false;
    bool m_isLegible = true;
    bool m_isEditing = false;
    QSizeF m_measuredSize;
    bool m_insistsOnSize = false;
};

} // namespace tallowby
