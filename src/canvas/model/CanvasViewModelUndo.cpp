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

} // namespace

void CanvasViewModel::registerAction(UndoAction action) {
    if (m_isPerformingUndoRedo) {
        return;
    }
    const HistoryWatch watch(*this);
    m_history.record(std::move(action));
}

void CanvasViewModel::undo() {
    perform(&UndoHistory::takeBack, &CanvasViewModel::takeBack);
}

void CanvasViewModel::redo() {
    perform(&UndoHistory::bringBack, &CanvasViewModel::makeAgain);
}

void CanvasViewModel::perform(std::optional<UndoAction> (UndoHistory::*take)(),
                              void (CanvasViewModel::*apply)(const UndoAction &)) {
    endEditing();
    const HistoryWatch watch(*this);
    if (const auto action = (m_history.*take)()) {
        m_isPerformingUndoRedo = true;
        (this->*apply)(*action);
        m_isPerformingUndoRedo = false;
        Q_EMIT cullingRequested();
    }
}

void CanvasViewModel::takeBack(const UndoAction &action) {
    std::visit(Overloaded{
                   [this](const AddAction &add) { deleteBlock(add.block); },
                   [this](const DeleteAction &deletion) { restore(deletion.block); },
                   [this](const MoveAction &move) {
                       moveTo(*move.block, move.from);
                       shiftPoints(*move.block, move.from - move.to);
                   },
                   [this](const ResizeAction &resize) { resizeTo(*resize.block, resize.from); },
                   [](const RotateAction &turn) { turn.block->setRotation(turn.from); },
                   [](const UpdateTextAction &typing) { typing.block->setRawText(typing.from); },
                   [this](const TransformAction &transform) {
                       applyFrame(*transform.block, {transform.fromPos, transform.fromSize});
                   },
               },
               action);
    noteRestored(action);
}

void CanvasViewModel::makeAgain(const UndoAction &action) {
    std::visit(Overloaded{
                   [this](const AddAction &add) { restore(add.block); },
                   [this](const DeleteAction &deletion) { deleteBlock(deletion.block); },
                   [this](const MoveAction &move) {
                       moveTo(*move.block, move.to);
                       shiftPoints(*move.block, move.to - move.from);
                   },
                   [this](const ResizeAction &resize) { resizeTo(*resize.block, resize.to); },
                   [](const RotateAction &turn) { turn.block->setRotation(turn.to); },
                   [](const UpdateTextAction &typing) { typing.block->setRawText(typing.to); },
                   [this](const TransformAction &transform) {
                       applyFrame(*transform.block, {transform.toPos, transform.toSize});
                   },
               },
               action);
    noteRestored(action);
}

/// What every change has in common that is taken back or made again.
void CanvasViewModel::noteRestored(const UndoAction &action) {
    const BlockPtr block = std::visit([](const auto &change) { return change.block; }, action);
    block->setNeedsSync(true);
    m_live.noteFrame(*block);
    m_storage.save();
}

} // namespace tallowby
