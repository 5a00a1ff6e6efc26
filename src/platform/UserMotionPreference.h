#pragma once

#include "platform/AppSettings.h"
#include "platform/desktop/MotionPreference.h"

namespace tallowby {

/// Less movement when the desktop asks for it, or the user in the program's settings.
class UserMotionPreference final : public MotionPreference {
public:
    /// Both outlive it.
    UserMotionPreference(const AppSettings &settings, const MotionPreference &desktop)
        : m_settings(settings)
        , m_desktop(desktop) {}

    [[nodiscard]] bool prefersReducedMotion() const override {
        return m_settings.reducesMotion() || m_desktop.prefersReducedMotion();
    }

private:
    const AppSettings &m_settings;
    const MotionPreference &m_desktop;
};

} // namespace tallowby
