#include "canvas/model/UndoHistory.h"

namespace tallowby {

namespace {

std::optional<UndoAction> moveNewest(std::vector<UndoAction> &from, std::vector<UndoAction> &to) {
    if (from.empty()) {
        return std::nullopt;
    }
    to.push_back(std::move(from.back()));
    from.pop_back();
    return to.back();
}

} // namespace

void UndoHistory::record(UndoAction action) {
    m_undoStack.push_back(std::move(action));
    m_redoStack.clear();
    if (m_undoStack.size() > kLongest) {
        m_undoStack.erase(m_undoStack.begin());
    }
}

std::optional<UndoAction> UndoHistory::takeBack() {
    return moveNewest(m_undoStack, m_redoStack);
}

std::optional<UndoAction> UndoHistory::bringBack() {
    return moveNewest(m_redoStack, m_undoStack);
}

void UndoHistory::forget(const Block &block) {
    const auto isAbout = [&block](const UndoAction &action) {
        return std::visit([&block](const auto &change) { return change.block.get() == &block; }, action);
    };
    std::erase_if(m_undoStack, isAbout);
    std::erase_if(m_redoStack, isAbout);
}

} // namespace tallowby
