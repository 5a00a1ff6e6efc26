#include "canvas/drawing/LiveSketchState.h"

#include "canvas/drawing/SketchRenderer.h"

#include <cmath>

namespace tallowby {

void LiveSketchState::append(double x, double y, double pressure) {
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(pressure)) {
        return;
    }
    m_currentStrokePoints.push_back({.x = x, .y = y, .pressure = pressure});
    if (m_currentStrokePoints.size() - m_frozenRawIndex >= kFreezingCount) {
        freeze();
    }
    Q_EMIT changed();
}

void LiveSketchState::freeze() {
    const std::size_t end = m_currentStrokePoints.size() - kUnfrozenTip;
    const auto settled = std::span(m_currentStrokePoints).subspan(tailStart(), end - tailStart());
    for (const SketchPoint &point : SketchRenderer::smoothed(settled, kSamplesPerSegment)) {
        m_frozenSmoothedPoints.emplace_back(point.x, point.y);
    }
    m_frozenRawIndex = end;
}

std::size_t LiveSketchState::tailStart() const {
    return m_frozenRawIndex < kBackStep ? 0 : m_frozenRawIndex - kBackStep;
}

std::vector<SketchPoint> LiveSketchState::unfrozenTail() const {
    return {m_currentStrokePoints.begin() + std::ptrdiff_t(tailStart()), m_currentStrokePoints.end()};
}

void LiveSketchState::reset() {
    if (m_currentStrokePoints.empty()) {
        return;
    }
    m_currentStrokePoints.clear();
    m_frozenSmoothedPoints.clear();
    m_frozenRawIndex = 0;
    Q_EMIT changed();
}

} // namespace tallowby
