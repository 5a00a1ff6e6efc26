#pragma once

#include <chrono>
#include <thread>

namespace tallowby::test {

/// Long enough for a slow machine that draws without a graphics processor; a step that works takes a fraction of it.
inline constexpr std::chrono::seconds kPatience{30};

/// Asks `isSo` until it is; false when it never was. For what another process does, which no virtual clock can move.
template <typename Condition>
[[nodiscard]] bool eventually(Condition isSo) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

} // namespace tallowby::test
