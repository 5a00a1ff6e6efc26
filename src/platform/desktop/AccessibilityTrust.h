#pragma once

namespace tallowby {

/// Whether this program may have keys that work everywhere. Main thread only.
class AccessibilityTrust {
public:
    virtual ~AccessibilityTrust() = default;

    [[nodiscard]] virtual bool isProcessTrusted() const = 0;
    /// The same, and where it is not has the desktop ask the user, if it has a way to.
    [[nodiscard]] virtual bool isProcessTrustedWithPrompt() = 0;
    /// Opens the desktop's own settings for keys.
    virtual void openSystemSettings() = 0;
};

} // namespace tallowby
