#pragma once

#include "model/Block.h"

#include <QPointF>
#include <QSizeF>

#include <optional>
#include <variant>
#include <vector>

namespace tallowby {

/// The changes that can be taken back. Each holds the block itself and the values before and after; points are the top
/// left corner of a block, all in canvas points.
struct AddAction {
    BlockPtr block;
};
struct DeleteAction {
    BlockPtr block;
};
struct MoveAction {
    BlockPtr block;
    QPointF from;
    QPointF to;
};
struct ResizeAction {
    BlockPtr block;
    QSizeF from;
    QSizeF to;
};
/// In degrees.
struct RotateAction {
    BlockPtr block;
    double from;
    double to;
};
struct UpdateTextAction {
    BlockPtr block;
    QString from;
    QString to;
};
struct TransformAction {
    BlockPtr block;
    QPointF fromPos;
    QPointF toPos;
    QSizeF fromSize;
    QSizeF toSize;
};
using UndoAction =
    std::variant<AddAction, DeleteAction, MoveAction, ResizeAction, RotateAction, UpdateTextAction, TransformAction>;

/// The linear history of changes that have been made, oldest first, and of those that were taken back. In memory only.
class UndoHistory {
public:
    /// After any recording; redoing may take the history beyond it until the next one.
    static constexpr std::size_t kLongest = 50;

    [[nodiscard]] bool canUndo() const { return !m_undoStack.empty(); }
    [[nodiscard]] bool canRedo() const { return !m_redoStack.empty(); }

    /// A change that has been made just now: it ends what could be redone.
    void record(UndoAction action);
    /// Moves the newest change over to those that were taken back, and hands it out; none when there is none.
    [[nodiscard]] std::optional<UndoAction> takeBack();
    /// The mirror image. Does not shorten the history.
    [[nodiscard]] std::optional<UndoAction> bringBack();
    /// Leaves out every change of a block, as if it had never been there.
    void forget(const Block &block);

private:
    std::vector<UndoAction> m_undoStack;
    std::vector<UndoAction> m_redoStack;
};

} // namespace tallowby
