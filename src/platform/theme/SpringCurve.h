#pragma once

#include <chrono>

namespace tallowby {

/// The way of an under-damped spring from 0 to 1, released at rest: the closed solution of
///
///     mass · x″ + damping · x′ + stiffness · (x − 1) = 0,  x(0) = 0,  x′(0) = 0
///
///     x(t) = 1 − e^(−λt) · (cos ωt + λ/ω · sin ωt),  λ = damping / 2·mass,  ω = √(stiffness/mass − λ²)
class SpringCurve {
public:
    using Duration = std::chrono::nanoseconds;
    /// The part of the way by which a spring that counts as settled may still be off.
    static constexpr double kRestTolerance = 0.001;

    /// `damping` below the critical 2·√(stiffness · mass), all above 0.
    SpringCurve(double mass, double stiffness, double damping);

    /// Overshoots 1 and swings back.
    [[nodiscard]] double value(Duration time) const;
    /// From when on the swing's envelope, √(1 + (λ/ω)²) · e^(−λt), stays within the rest tolerance.
    [[nodiscard]] Duration settlingDuration() const;

private:
    double m_decay;
    double m_frequency;
};

} // namespace tallowby
