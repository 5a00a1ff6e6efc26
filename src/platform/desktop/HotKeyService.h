#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace tallowby {

/// The identity that a registered combination carries: a four-character code, most significant byte first, and a
/// number that is unique under it.
struct HotKeyID {
    std::uint32_t signature = 0;
    std::uint32_t id = 0;
};

/// Holds one registered combination; destroying it gives the combination back to the system.
class HotKeyRegistration {
public:
    virtual ~HotKeyRegistration() = default;
};

struct HotKeyResult {
    /// 0 when the combination is held, otherwise the platform's error code.
    std::int32_t status = 0;
    /// Empty when the status is not 0.
    std::unique_ptr<HotKeyRegistration> registration;
};

/// Key combinations that work whichever application has the keyboard. Main thread only.
class HotKeyService {
public:
    virtual ~HotKeyService() = default;

    /// Sets what is called, on the main thread, at each press of a registered combination; auto-repeat of a held key is
    /// no press. What is typed right after a press waits, for a moment at most, until a window of this program has the
    /// keyboard, so a window is brought up at once or not at all. Returns 0, or the platform's error code when presses
    /// cannot be delivered at all.
    virtual std::int32_t installHandler(std::function<void()> pressed) = 0;

    /// Registers a combination given as virtual key code and Carbon modifier mask: whole or not at all.
    [[nodiscard]] virtual HotKeyResult registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id) = 0;
};

} // namespace tallowby
