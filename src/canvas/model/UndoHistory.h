#pragma once

#include "model/Block.h"

#include <QPointF>
#include <QSizeF>

#include <cstdint>
#include <deque>
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

/// Back to before a change, or forth again.
enum class UndoDirection { back, forth };

/// The linear history of changes that have been made, oldest first, and of those that were taken back. In memory only.
/// It also knows which changes one gesture of a person made together, so that they can be taken back together.
class UndoHistory {
public:
    /// After any recording; redoing may take the history beyond it until the next one.
    static constexpr std::size_t kMaxLength = 50;

    [[nodiscard]] bool canUndo() const { return !m_undoStack.empty(); }
    [[nodiscard]] bool canRedo() const { return !m_redoStack.empty(); }

    /// A change that has been made just now: it ends what could be redone. Outside a group it is a gesture by itself.
    void record(UndoAction action);
    /// All changes that are recorded until its end are one gesture. A group inside another one is part of that one.
    void beginGroup();
    /// Goes on with the newest gesture if that one put the block on the canvas, else the same as `beginGroup`.
    void continueGroupOf(const Block &added);
    void endGroup();

    /// Moves the newest change over to those that were taken back, and hands it out; none when there is none. Forth, it
    /// is the mirror image, which does not shorten the history.
    [[nodiscard]] std::vector<UndoAction> takeChange(UndoDirection direction);
    /// The same for all changes of the newest gesture, in the order in which they have to be applied. A gesture comes
    /// back whole even if it made more changes than the history holds.
    [[nodiscard]] std::vector<UndoAction> takeGesture(UndoDirection direction);
    /// Leaves out every change of a block, as if it had never been there.
    void forget(const Block &block);

private:
    using GroupId = std::uint64_t;
    struct Entry {
        UndoAction action;
        GroupId group;
    };
    using Stack = std::deque<Entry>;

    void putBackPushedOut();

    Stack m_undoStack;
    Stack m_redoStack;
    /// Changes that the limit has pushed out of the history while others of their gesture are still in it. They are all
    /// of that one gesture and come right before the oldest entry of the undo stack.
    Stack m_pushedOut;
    GroupId m_newestGroup = 0;
    /// That of what is being recorded.
    GroupId m_group = 0;
    int m_openGroups = 0;
};

} // namespace tallowby
