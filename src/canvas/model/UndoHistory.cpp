#include "canvas/model/UndoHistory.h"

#include <algorithm>
#include <iterator>

namespace tallowby {

void UndoHistory::record(UndoAction action) {
    if (m_openGroups == 0) {
        m_group = ++m_newestGroup;
    }
    m_undoStack.push_back({std::move(action), m_group});
    m_redoStack.clear();
    if (m_undoStack.size() > kMaxLength) {
        m_pushedOut.push_back(std::move(m_undoStack.front()));
        m_undoStack.pop_front();
    }
    if (!m_pushedOut.empty() && m_pushedOut.back().group != m_undoStack.front().group) {
        m_pushedOut.clear();
    }
}

void UndoHistory::beginGroup() {
    if (m_openGroups++ == 0) {
        m_group = ++m_newestGroup;
    }
}

void UndoHistory::continueGroupOf(const Block &added) {
    const auto isOlder = [this](const Entry &entry) { return entry.group != m_undoStack.back().group; };
    const auto end = std::find_if(m_undoStack.rbegin(), m_undoStack.rend(), isOlder);
    const bool isAddedByNewest = std::any_of(m_undoStack.rbegin(), end, [&added](const Entry &entry) {
        const auto *add = std::get_if<AddAction>(&entry.action);
        return add && add->block.get() == &added;
    });
    if (m_openGroups > 0 || !isAddedByNewest) {
        beginGroup();
        return;
    }
    ++m_openGroups;
    m_group = m_undoStack.back().group;
}

void UndoHistory::endGroup() {
    --m_openGroups;
}

std::vector<UndoAction> UndoHistory::takeChange(UndoDirection direction) {
    Stack &from = direction == UndoDirection::back ? m_undoStack : m_redoStack;
    Stack &to = direction == UndoDirection::back ? m_redoStack : m_undoStack;
    if (from.empty()) {
        return {};
    }
    to.push_back(std::move(from.back()));
    from.pop_back();
    return {to.back().action};
}

std::vector<UndoAction> UndoHistory::takeGesture(UndoDirection direction) {
    if (direction == UndoDirection::back) {
        putBackPushedOut();
    }
    const Stack &from = direction == UndoDirection::back ? m_undoStack : m_redoStack;
    std::vector<UndoAction> actions;
    for (GroupId group = from.empty() ? 0 : from.back().group; !from.empty() && from.back().group == group;) {
        actions.push_back(std::move(takeChange(direction).front()));
    }
    return actions;
}

/// If they are of the newest gesture.
void UndoHistory::putBackPushedOut() {
    if (!m_undoStack.empty() && !m_pushedOut.empty() && m_pushedOut.back().group == m_undoStack.back().group) {
        m_undoStack.insert(m_undoStack.begin(), std::move_iterator(m_pushedOut.begin()),
                           std::move_iterator(m_pushedOut.end()));
        m_pushedOut.clear();
    }
}

void UndoHistory::forget(const Block &block) {
    const auto isAbout = [&block](const Entry &entry) {
        return std::visit([&block](const auto &change) { return change.block.get() == &block; }, entry.action);
    };
    std::erase_if(m_undoStack, isAbout);
    std::erase_if(m_redoStack, isAbout);
    std::erase_if(m_pushedOut, isAbout);
}

} // namespace tallowby
