#pragma once

#include "canvas/model/CanvasViewModel.h"

namespace tallowby {

/// While it lives, all changes that are recorded are one gesture of a person, which `undoGesture` takes back whole.
/// Inside another one it is part of that one.
class UndoGroup {
public:
    explicit UndoGroup(CanvasViewModel &model)
        : m_model(model) {
        m_model.beginUndoGroup();
    }
    /// Goes on with the newest gesture if that one put the block on the canvas: what is done to a new block right
    /// after its coming is taken back together with it.
    UndoGroup(CanvasViewModel &model, const Block &added)
        : m_model(model) {
        m_model.continueUndoGroupOf(added);
    }
    ~UndoGroup() { m_model.endUndoGroup(); }
    UndoGroup(const UndoGroup &) = delete;
    UndoGroup &operator=(const UndoGroup &) = delete;

private:
    CanvasViewModel &m_model;
};

} // namespace tallowby
