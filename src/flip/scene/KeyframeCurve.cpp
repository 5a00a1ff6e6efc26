#include "flip/scene/KeyframeCurve.h"

#include <QPointF>

#include <algorithm>
#include <cmath>

namespace tallowby {

KeyframeCurve::KeyframeCurve(std::vector<Keyframe> keyframes)
    : m_keyframes(std::move(keyframes))
    , m_easing(QEasingCurve::BezierSpline) {
    Q_ASSERT(m_keyframes.size() >= 2);
    m_easing.addCubicBezierSegment({0.42, 0}, {0.58, 1}, {1, 1});
}

double KeyframeCurve::value(double progress) const {
    const auto next = std::ranges::upper_bound(m_keyframes, progress, {}, &Keyframe::time);
    if (next == m_keyframes.begin()) {
        return m_keyframes.front().value;
    }
    if (next == m_keyframes.end()) {
        return m_keyframes.back().value;
    }
    const Keyframe &from = *std::prev(next);
    const double part = (progress - from.time) / (next->time - from.time);
    return std::lerp(from.value, next->value, m_easing.valueForProgress(part));
}

} // namespace tallowby
