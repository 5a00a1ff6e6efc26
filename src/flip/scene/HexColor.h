#pragma once

#include <QColor>
#include <QStringView>

namespace tallowby {

/// The colour that hexadecimal digits name: 3 (RGB, each doubled), 6 (RRGGBB) or 8 (AARRGGBB). Characters around them
/// that are neither letter nor digit are dropped, so "#F9F8F2" and "F9F8F2" are the same. Anything else is black.
[[nodiscard]] QColor colorFromHex(QStringView text);

} // namespace tallowby
