#pragma once

namespace tallowby {

/// Whether the user asked the desktop for less movement. Main thread only.
class MotionPreference {
public:
    virtual ~MotionPreference() = default;

    /// True when animations are switched off on the desktop, or `TALLOWBY_REDUCED_MOTION=1` is in the environment.
    [[nodiscard]] virtual bool prefersReducedMotion() const = 0;
};

} // namespace tallowby
