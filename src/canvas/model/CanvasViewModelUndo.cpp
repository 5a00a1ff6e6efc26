#include "canvas/model/CanvasViewModel.h"
#include "canvas/model/HistoryWatch.h"
#include "storage/BlockStorage.h"

namespace tallowby {

namespace {

template <typename... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

/// What an action does to the block that it is about.
enum class Effect { comes, goes, changes };

Effect effectOf(const UndoAction &action, UndoDirection direction) {
    const bool isTakenBack = direction == UndoDirection::back;
    if (std::holds_alternative<AddAction>(action)) {
        return isTakenBack ? Effect::goes : Effect::comes;
    }
    if (std::holds_alternative<DeleteAction>(action)) {
        return isTakenBack ? Effect::comes : Effect::goes;
    }
    return Effect::changes;
}

BlockPtr blockOf(const UndoAction &action) {
    return std::visit([](const auto &change) { return change.block; }, action);
}

void setPosition(Block &block, QPointF position) {
    block.setXPosition(position.x());
    block.setYPosition(position.y());
}

void setSize(Block &block, QSizeF size) {
    block.setWidth(size.width());
    block.setHeight(size.height());
}

} // namespace

void CanvasViewModel::registerAction(UndoAction action) {
    if (m_isPerformingUndoRedo) {
        return;
    }
    const HistoryWatch watch(*this);
    m_history.record(std::move(action));
}

void CanvasViewModel::undo() {
    perform(&UndoHistory::takeChange, UndoDirection::back);
}

void CanvasViewModel::redo() {
    perform(&UndoHistory::takeChange, UndoDirection::forth);
}

void CanvasViewModel::undoGesture() {
    perform(&UndoHistory::takeGesture, UndoDirection::back);
}

void CanvasViewModel::redoGesture() {
    perform(&UndoHistory::takeGesture, UndoDirection::forth);
}

void CanvasViewModel::perform(std::vector<UndoAction> (UndoHistory::*take)(UndoDirection), UndoDirection direction) {
    endEditing();
    const HistoryWatch watch(*this);
    const std::vector<UndoAction> actions = (m_history.*take)(direction);
    if (actions.empty()) {
        return;
    }
    m_isPerformingUndoRedo = true;
    for (auto action = actions.begin(); action != actions.end();) {
        // Blocks that come or go one after the other do so at once: each of them is looked for in all others.
        const Effect effect = effectOf(*action, direction);
        std::vector<BlockPtr> blocks;
        for (; action != actions.end() && effectOf(*action, direction) == effect; ++action) {
            blocks.push_back(blockOf(*action));
            change(*action, direction);
        }
        if (effect == Effect::comes) {
            restore(blocks);
        } else if (effect == Effect::goes) {
            softDelete(blocks);
        }
        markRestored(blocks);
    }
    m_isPerformingUndoRedo = false;
    Q_EMIT framesChanged();
    Q_EMIT cullingRequested();
}

/// The values of the block that the action holds; nothing for one that lets a block come or go.
void CanvasViewModel::change(const UndoAction &action, UndoDirection direction) {
    const bool isBack = direction == UndoDirection::back;
    std::visit(Overloaded{
                   [&](const MoveAction &move) {
                       setPosition(*move.block, isBack ? move.from : move.to);
                       shiftPoints(*move.block, isBack ? move.from - move.to : move.to - move.from);
                   },
                   [&](const ResizeAction &resize) { setSize(*resize.block, isBack ? resize.from : resize.to); },
                   [&](const RotateAction &turn) { turn.block->setRotation(isBack ? turn.from : turn.to); },
                   [&](const UpdateTextAction &typing) { typing.block->setRawText(isBack ? typing.from : typing.to); },
                   [&](const TransformAction &transform) {
                       setPosition(*transform.block, isBack ? transform.fromPos : transform.toPos);
                       setSize(*transform.block, isBack ? transform.fromSize : transform.toSize);
                   },
                   [](const auto &) {},
               },
               action);
}

/// What every change has in common that is taken back or made again.
void CanvasViewModel::markRestored(const std::vector<BlockPtr> &blocks) {
    for (const BlockPtr &block : blocks) {
        block->setNeedsSync(true);
    }
    m_live.updateReaches(blocks);
    m_storage.save();
}

} // namespace tallowby
