#pragma once

#include "platform/desktop/AccessibilityTrust.h"
#include "platform/linux/SettingsPrograms.h"
#include "platform/linux/x11/XcbConnection.h"

namespace tallowby {

/// On X11 every program may take keys, so there is trust wherever there is a server to take them from.
class X11Trust final : public AccessibilityTrust {
public:
    explicit X11Trust(const XcbConnection &x11)
        : m_x11(x11) {}

    [[nodiscard]] bool isProcessTrusted() const override { return m_x11.isValid(); }
    /// There is nobody to ask: a server is there or is not.
    [[nodiscard]] bool isProcessTrustedWithPrompt() override { return isProcessTrusted(); }
    void openSystemSettings() override { openKeyboardSettings(); }

private:
    const XcbConnection &m_x11;
};

} // namespace tallowby
