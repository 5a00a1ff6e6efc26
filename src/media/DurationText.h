#pragma once

#include <QString>

namespace tallowby {

/// Whole seconds, cut off, as minutes and seconds: 0:00, 1:15, 60:00. A number that is not finite, or that no 64-bit
/// integer holds, ends the program.
[[nodiscard]] QString formatDuration(double seconds);

} // namespace tallowby
