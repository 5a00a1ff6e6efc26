#include "canvas/tools/PlaceTool.h"

#include "canvas/model/CanvasViewModel.h"

namespace tallowby {

void PlaceTool::release(const PointerInput &) {
    viewModel().spawnBlock(m_place, m_type, {});
}

Qt::CursorShape PlaceTool::cursor(const PointerInput &) const {
    return m_type == BlockType::text ? Qt::IBeamCursor : Qt::CrossCursor;
}

} // namespace tallowby
