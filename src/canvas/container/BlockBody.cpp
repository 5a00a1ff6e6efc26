#include "canvas/container/BlockBody.h"

#include "canvas/view/InfiniteCanvasView.h"
#include "platform/theme/Theme.h"

namespace tallowby {

void BlockBody::attach(Block &block, InfiniteCanvasView &canvas, const BlockKind &kind) {
    m_block = &block;
    m_canvas = &canvas;
    m_viewModel = &canvas.viewModel();
    m_kind = &kind;
}

void BlockBody::setZoom(double zoom) {
    m_zoom = zoom;
    updateIsLegible();
}

double BlockBody::textSize() const {
    return Theme::shared().bodySize();
}

void BlockBody::updateIsLegible() {
    const bool isLegible = textSize() * m_zoom >= kSmallestLegibleSize;
    if (m_isLegible != isLegible) {
        m_isLegible = isLegible;
        Q_EMIT isLegibleChanged();
    }
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

void BlockBody::insistOnSize(QSizeF size) {
    m_insistsOnSize = true;
    if (m_measuredSize != size || this->size() != size) {
        m_measuredSize = size;
        Q_EMIT measuredSizeChanged();
    }
}

} // namespace tallowby
