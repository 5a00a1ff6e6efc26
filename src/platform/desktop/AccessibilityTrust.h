#pragma once

namespace tallowby {

/// Whether this program may have keys that work everywhere. Main thread only.
class AccessibilityTrust {
public:
    virtual ~AccessibilityTrust() = default;

    [[nodiscard]] virtual bool isProcessTrusted() const = 0;
};

} // namespace tallowby
