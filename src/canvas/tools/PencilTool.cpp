#include "canvas/tools/PencilTool.h"

#include "canvas/drawing/LiveSketchState.h"
#include "canvas/model/CanvasViewModel.h"
#include "canvas/view/Viewport.h"

#include <algorithm>

namespace tallowby {

namespace {

/// What a finger draws before a second one comes that is to zoom with it, at most; in screen points.
constexpr double kLongestSlip = 24;

} // namespace

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
    keep();
}

void PencilTool::keep() {
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

bool PencilTool::interrupt() {
    double left = 0, right = 0, top = 0, bottom = 0;
    const auto &points = context().liveSketch().currentStrokePoints();
    for (const SketchPoint &point : points) {
        left = std::min(left, point.x - points.front().x);
        right = std::max(right, point.x - points.front().x);
        top = std::min(top, point.y - points.front().y);
        bottom = std::max(bottom, point.y - points.front().y);
    }
    const bool isStroke = std::max(right - left, bottom - top) * context().viewport().scale() > kLongestSlip;
    if (isStroke) {
        keep();
    } else {
        cancel();
    }
    return isStroke;
}

void PencilTool::clear() {
    m_block.reset();
    context().liveSketch().reset();
}

Qt::CursorShape PencilTool::cursor(const PointerInput &) const {
    return Qt::CrossCursor;
}

} // namespace tallowby
