#include "platform/theme/SpringCurve.h"

#include <QtGlobal>

#include <cmath>

namespace tallowby {

using Seconds = std::chrono::duration<double>;

SpringCurve::SpringCurve(double mass, double stiffness, double damping)
    : m_decay(damping / (2 * mass))
    , m_frequency(std::sqrt(stiffness / mass - m_decay * m_decay)) {
    Q_ASSERT(m_decay > 0 && m_frequency > 0);
}

double SpringCurve::value(Duration time) const {
    const double seconds = Seconds(time).count();
    const double phase = m_frequency * seconds;
    return 1 - std::exp(-m_decay * seconds) * (std::cos(phase) + m_decay / m_frequency * std::sin(phase));
}

SpringCurve::Duration SpringCurve::settlingDuration() const {
    const double amplitude = std::hypot(1, m_decay / m_frequency);
    return std::chrono::ceil<Duration>(Seconds(std::log(amplitude / kRestTolerance) / m_decay));
}

} // namespace tallowby
