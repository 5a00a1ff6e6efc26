#pragma once

#include "model/Block.h"

namespace tallowby {

class CanvasViewModel;

/// A block being turned by its rotation handle: by how far the handle is dragged sideways. While the gesture lasts the
/// block follows, unstamped and unsaved; the end commits one change.
class RotateGesture {
public:
    static constexpr double kDegreesPerPoint = 0.5;

    explicit RotateGesture(BlockPtr block);

    /// `dx` from the start of the gesture, in canvas points.
    void change(double dx);
    void end(CanvasViewModel &viewModel, double dx);
    /// Puts the block back.
    void cancel();

private:
    BlockPtr m_block;
    double m_rotationInitialAngle;
};

} // namespace tallowby
