#include "canvas/tools/ShapeTool.h"

#include "canvas/model/CanvasViewModel.h"

#include <utility>

namespace tallowby {

void ShapeTool::press(const PointerInput &input) {
    viewModel().endEditing();
    m_start = input.canvas;
    m_block = viewModel().beginShapeDraw(viewModel().activeTool().shapeType(), m_start);
}

void ShapeTool::move(const PointerInput &input) {
    viewModel().updateShapeDrawFrame(m_block, m_start, input.canvas);
}

void ShapeTool::release(const PointerInput &) {
    viewModel().finalizeShapeDraw(std::exchange(m_block, nullptr));
}

void ShapeTool::cancel() {
    viewModel().deleteBlockSilently(std::exchange(m_block, nullptr));
}

} // namespace tallowby
