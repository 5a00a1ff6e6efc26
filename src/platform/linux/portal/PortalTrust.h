#pragma once

#include "platform/desktop/AccessibilityTrust.h"
#include "platform/linux/SettingsPrograms.h"
#include "platform/linux/portal/PortalHotKeyService.h"

namespace tallowby {

/// Where the desktop portal gives the keys, there is trust wherever there is a portal to ask: the user decides in the
/// portal's own dialogue, when the key is registered.
class PortalTrust final : public AccessibilityTrust {
public:
    explicit PortalTrust(const PortalHotKeyService &portal)
        : m_portal(portal) {}

    [[nodiscard]] bool isProcessTrusted() const override { return m_portal.isAvailable(); }
    [[nodiscard]] bool isProcessTrustedWithPrompt() override { return isProcessTrusted(); }
    void openSystemSettings() override { openKeyboardSettings(); }

private:
    const PortalHotKeyService &m_portal;
};

} // namespace tallowby
