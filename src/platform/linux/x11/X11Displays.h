#pragma once

#include "platform/desktop/Displays.h"

namespace tallowby {

/// The displays as Qt has them. The id is a hash over the connector and what the monitor says of itself: manufacturer,
/// model and serial number.
class X11Displays final : public Displays {
public:
    [[nodiscard]] std::vector<Display> all() const override;
};

} // namespace tallowby
