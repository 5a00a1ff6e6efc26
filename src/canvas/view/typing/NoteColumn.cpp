#include "canvas/view/typing/NoteColumn.h"

#include "canvas/model/BlockGeometry.h"
#include "canvas/model/CanvasViewModel.h"

#include <algorithm>

namespace tallowby {

namespace {

/// How far a hand that rests on a mouse moves it, in points of the desktop.
constexpr int kTremble = 3;

} // namespace

QPointF NoteColumn::placeFor(QPoint cursor, QPointF pointed) {
    std::erase_if(m_notes, [](const BlockPtr &note) { return !note->isLive(); });
    const bool isResting = (cursor - m_cursor).manhattanLength() <= kTremble;
    if (!isResting || !isTaken(pointed)) {
        m_notes.clear();
        m_cursor = cursor;
        return pointed;
    }
    const Block &last = *m_notes.back();
    return QPointF(last.xPosition(), boundsOf(last).bottom() + kGap) + CanvasViewModel::kSpawnedTextCorner;
}

/// The paper may have moved under the pointer, by hand or to follow the column: any of the notes may lie there now.
bool NoteColumn::isTaken(QPointF point) const {
    const QRectF frame(point - CanvasViewModel::kSpawnedTextCorner, CanvasViewModel::kSpawnedTextSize);
    return std::ranges::any_of(m_notes, [&frame](const BlockPtr &note) { return meet(boundsOf(*note), frame); });
}

} // namespace tallowby
