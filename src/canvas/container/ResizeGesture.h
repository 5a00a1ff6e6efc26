#pragma once

#include "model/Block.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <optional>

namespace tallowby {

class CanvasViewModel;

/// The four handles at the corners of a selected block.
enum class Corner { topLeft, topRight, bottomLeft, bottomRight };

/// Where a corner lies, seen from the middle: -1 is left or above, 1 is right or below.
[[nodiscard]] QPointF directionOf(Corner corner);

/// A block being resized by one of its corners. The corner opposite to it stays where it is on the canvas, also of a
/// turned block, whose sides grow along its own axes. An image keeps the proportions of its picture. While the gesture
/// lasts the block follows, unstamped and unsaved; the end commits one change.
class ResizeGesture {
public:
    /// In canvas points.
    static constexpr QSizeF kSmallestSize{50, 40};

    ResizeGesture(BlockPtr block, Corner corner);

    /// `translation` from the start of the gesture, in canvas points.
    void change(CanvasViewModel &viewModel, QPointF translation);
    void end(CanvasViewModel &viewModel, QPointF translation);
    /// Puts the block back.
    void cancel(CanvasViewModel &viewModel);

    [[nodiscard]] QRectF frameAt(QPointF translation) const;

private:
    [[nodiscard]] QRectF initialFrame() const { return {m_dragInitialPos, m_resizeInitialSize}; }

    BlockPtr m_block;
    Corner m_corner;
    QPointF m_dragInitialPos;
    QSizeF m_resizeInitialSize;
    double m_rotation;
    /// Height by width of an image's picture.
    std::optional<double> m_cachedAspectRatio;
};

} // namespace tallowby
