#include "canvas/BlockBody.h"

namespace tallowby {

void BlockBody::attach(Block &block, CanvasViewModel &viewModel, const BlockKind &kind) {
    m_block = &block;
    m_viewModel = &viewModel;
    m_kind = &kind;
}

void BlockBody::setIsEditing(bool isEditing) {
    if (m_isEditing != isEditing) {
        m_isEditing = isEditing;
        Q_EMIT isEditingChanged();
    }
}

void BlockBody::setMeasuredSize(QSizeF size) {
    if (m_measuredSize != size) {
        m_measuredSize = size;
        Q_EMIT measuredSizeChanged();
    }
}

} // namespace tallowby
