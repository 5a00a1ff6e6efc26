#include "canvas/container/RotateGesture.h"

#include "canvas/model/CanvasViewModel.h"

#include <utility>

namespace tallowby {

RotateGesture::RotateGesture(BlockPtr block)
    : m_block(std::move(block))
    , m_rotationInitialAngle(m_block->rotation()) {}

void RotateGesture::change(double dx) {
    m_block->setRotation(m_rotationInitialAngle + dx * kDegreesPerPoint);
}

void RotateGesture::end(CanvasViewModel &viewModel, double dx) {
    change(dx);
    if (m_block->rotation() != m_rotationInitialAngle) {
        viewModel.updateRotation(m_block, m_rotationInitialAngle, m_block->rotation());
    }
}

void RotateGesture::cancel() {
    m_block->setRotation(m_rotationInitialAngle);
}

} // namespace tallowby
