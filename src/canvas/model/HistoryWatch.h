#pragma once

#include "canvas/model/CanvasViewModel.h"

namespace tallowby {

/// Tells of what can be undone and redone once a change of the history is over.
class CanvasViewModel::HistoryWatch {
public:
    explicit HistoryWatch(CanvasViewModel &model)
        : m_model(model)
        , m_couldUndo(model.canUndo())
        , m_couldRedo(model.canRedo()) {}
    ~HistoryWatch() {
        if (m_model.canUndo() != m_couldUndo) {
            Q_EMIT m_model.canUndoChanged();
        }
        if (m_model.canRedo() != m_couldRedo) {
            Q_EMIT m_model.canRedoChanged();
        }
    }
    HistoryWatch(const HistoryWatch &) = delete;
    HistoryWatch &operator=(const HistoryWatch &) = delete;

private:
    CanvasViewModel &m_model;
    bool m_couldUndo;
    bool m_couldRedo;
};

} // namespace tallowby
