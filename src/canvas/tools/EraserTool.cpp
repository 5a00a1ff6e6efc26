#include "canvas/tools/EraserTool.h"

#include "canvas/model/CanvasViewModel.h"

namespace tallowby {

void EraserTool::press(const PointerInput &input) {
    // Whatever goes with the end of editing was not erased.
    viewModel().endEditing();
    const std::size_t count = viewModel().blocks().size();
    viewModel().eraseAt(input.canvas);
    m_hasErased = viewModel().blocks().size() < count;
}

void EraserTool::cancel() {
    if (m_hasErased) {
        viewModel().undo();
    }
}

Qt::CursorShape EraserTool::cursor(const PointerInput &) const {
    return Qt::CrossCursor;
}

} // namespace tallowby
