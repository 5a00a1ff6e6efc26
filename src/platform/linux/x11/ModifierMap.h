#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace tallowby {

class XcbConnection;

/// Which modifier bits of the X server carry what, read from its modifier map: Alt and Super live on different bits
/// from one keyboard to the next.
class ModifierMap {
public:
    ModifierMap() = default;
    /// As the server has it now.
    explicit ModifierMap(XcbConnection &x11);

    /// The X modifiers of a Carbon modifier mask; none when this keyboard lacks one of them.
    [[nodiscard]] std::optional<std::uint16_t> fromCarbon(std::uint32_t carbonMask) const;
    /// Every combination in which Caps Lock, Num Lock and Scroll Lock can be on while `modifiers` are held.
    [[nodiscard]] std::vector<std::uint16_t> withLocks(std::uint16_t modifiers) const;
    /// Whether a key event's `state` holds `modifiers` and no others, whatever the locks, buttons and keyboard group.
    [[nodiscard]] bool isExactly(std::uint16_t state, std::uint16_t modifiers) const;

    bool operator==(const ModifierMap &) const = default;

private:
    // One bit each; 0 when no key carries it.
    std::uint16_t m_alt = 0;
    std::uint16_t m_super = 0;
    // Any number of bits.
    std::uint16_t m_locks = 0;
};

} // namespace tallowby
