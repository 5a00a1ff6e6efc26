#include "canvas/tools/PencilTool.h"

#include "canvas/drawing/LiveSketchState.h"
#include "canvas/model/CanvasViewModel.h"

#include <utility>

namespace tallowby {

void PencilTool::press(const PointerInput &input) {
    viewModel().endEditing();
    context().liveSketch().reset();
    m_block = viewModel().beginSketch(input.canvas);
    append(input);
}

void PencilTool::move(const PointerInput &input) {
    append(input);
}

void PencilTool::append(const PointerInput &input) {
    context().liveSketch().append(input.canvas.x(), input.canvas.y(), input.pressure);
}

void PencilTool::release(const PointerInput &) {
    CanvasViewModel &model = viewModel();
    model.commitStroke(m_block, context().liveSketch().currentStrokePoints(), model.pencilColor(), model.pencilWidth());
    if (m_block->sketchStrokes().empty()) {
        model.deleteBlockSilently(m_block);
    } else {
        model.registerAction(AddAction{m_block});
    }
    clear();
}

void PencilTool::cancel() {
    viewModel().deleteBlockSilently(m_block);
    clear();
}

void PencilTool::clear() {
    m_block.reset();
    context().liveSketch().reset();
}

Qt::CursorShape PencilTool::cursor(const PointerInput &) const {
    return Qt::CrossCursor;
}

} // namespace tallowby
