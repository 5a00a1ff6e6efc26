#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>

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

/// The status of a registration about which the desktop is still asking the user.
inline constexpr std::int32_t kHotKeyUndecided = std::numeric_limits<std::int32_t>::min();

struct HotKeyResult {
    /// 0 when the combination is held, `kHotKeyUndecided`, or the platform's error code.
    std::int32_t status = 0;
    /// Empty when the status is an error.
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

    /// Sets what is called, on the main thread, with 0 or an error code: when the desktop has decided about a
    /// registration, has taken one back, or has given it back or other keys.
    virtual void installDecisionHandler(std::function<void(std::int32_t status)> decided) { (void) decided; }
    /// Where the desktop gives the keys and programs only make a wish: what it has given, in its own words; empty as
    /// long as it has given none. None where a program holds the combination that it asked for.
    [[nodiscard]] virtual std::optional<QString> assignedKeys() const { return std::nullopt; }
    /// Has the desktop show where the user can give other keys. Does nothing where `assignedKeys` is none.
    virtual void openKeyAssignment() {}
    /// The desktop's own use of the combination as a noun, such as "the window menu"; empty when none is known.
    [[nodiscard]] virtual QString knownUse(std::uint32_t keyCode, std::uint32_t modifiers) const {
        (void) keyCode;
        (void) modifiers;
        return {};
    }
    /// Whether presses come in front of every other program, or of some only.
    [[nodiscard]] virtual bool reachesEverywhere() const { return true; }
};

} // namespace tallowby
