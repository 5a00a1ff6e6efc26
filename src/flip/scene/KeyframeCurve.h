#pragma once

#include <QEasingCurve>

#include <vector>

namespace tallowby {

/// Values at given points of a way from 0 to 1, eased in and out between each two of them: cubic Bézier curve
/// (0.42, 0, 0.58, 1).
class KeyframeCurve {
public:
    struct Keyframe {
        double time;
        double value;
    };

    /// Two key frames at least, by rising time, the first at 0 and the last at 1.
    explicit KeyframeCurve(std::vector<Keyframe> keyframes);

    /// Outside 0 … 1 the nearest end's value.
    [[nodiscard]] double value(double progress) const;

private:
    std::vector<Keyframe> m_keyframes;
    QEasingCurve m_easing;
};

} // namespace tallowby
