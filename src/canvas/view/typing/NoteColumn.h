#pragma once

#include "model/Block.h"

#include <QPointF>

#include <vector>

namespace tallowby {

/// Where a note goes that is typed on the empty canvas: under the pointer. While the pointer rests, the notes that are
/// typed one after another form a column, each below the one before. Points are canvas points unless said otherwise.
class NoteColumn {
public:
    /// Between two notes.
    static constexpr double kGap = 12;

    /// The point for `CanvasViewModel::spawnBlock`. `cursor` is the pointer's place on the desktop, `pointed` the same
    /// on the canvas.
    [[nodiscard]] QPointF placeFor(QPoint cursor, QPointF pointed);
    /// The note that was made there.
    void add(const BlockPtr &note) { m_notes.push_back(note); }

private:
    [[nodiscard]] bool isTaken(QPointF point) const;

    /// Where the pointer was when the column was begun.
    QPoint m_cursor;
    /// In the order of their typing.
    std::vector<BlockPtr> m_notes;
};

} // namespace tallowby
