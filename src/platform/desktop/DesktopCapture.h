#pragma once

#include "platform/desktop/Displays.h"

#include <QImage>

namespace tallowby {

/// Pictures of the desktop as it stands. Main thread only.
class DesktopCapture {
public:
    virtual ~DesktopCapture() = default;

    /// What `display` shows now, reduced by the whole factor `reduction` in both directions (averaged, not sampled).
    /// A null image where the platform gives none.
    [[nodiscard]] virtual QImage capture(const Display &display, int reduction) = 0;
};

} // namespace tallowby
