#include "canvas/container/BlockBody.h"

#include "canvas/view/InfiniteCanvasView.h"
#include "platform/theme/Theme.h"

#include <QQuickWindow>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowby {

namespace {

constexpr double kCoarsestDetail = 0.25;
constexpr double kFinestDetail = 16;

} // namespace

void BlockBody::attach(Block &block, InfiniteCanvasView &canvas, const BlockKind &kind) {
    m_block = &block;
    m_canvas = &canvas;
    m_viewModel = &canvas.viewModel();
    m_kind = &kind;
}

void BlockBody::setZoom(double zoom) {
    const bool wasScaled = isScaled();
    m_zoom = zoom;
    if (!m_hasDetail || !isLegibilityDue()) {
        updateIsLegible();
    }
    updateDetail();
    if (wasScaled != isScaled()) {
        Q_EMIT isScaledChanged();
    }
}

void BlockBody::settleZoom() {
    setDetail(exactDetail());
}

double BlockBody::exactDetail() const {
    const double pixelsPerPoint = m_zoom * (window() ? window()->effectiveDevicePixelRatio() : 1.0);
    return std::clamp(pixelsPerPoint, kCoarsestDetail, kFinestDetail);
}

/// While the zoom changes, symbols keep their pictures until those are too coarse or too fine.
void BlockBody::updateDetail() {
    const double exact = exactDetail();
    if (!std::exchange(m_hasDetail, true)) {
        setDetail(exact);
    } else if (exact > m_detail || 2 * exact < m_detail) {
        setDetail(std::exp2(std::ceil(std::log2(exact))));
    }
}

void BlockBody::setDetail(double detail) {
    if (m_detail != detail) {
        m_detail = detail;
        Q_EMIT detailChanged();
    }
}

void BlockBody::itemChange(ItemChange change, const ItemChangeData &data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged) {
        setDetail(exactDetail());
    }
}

double BlockBody::textSize() const {
    return Theme::shared().bodySize();
}

void BlockBody::updateIsLegible() {
    const bool isLegible = isTextLegible();
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
