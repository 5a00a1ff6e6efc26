#pragma once

#include <QByteArrayView>

#include <cstdint>
#include <optional>

namespace tallowby {

class XcbConnection;

/// The whole number that an XSETTINGS property (freedesktop.org) gives for `name`; none when it is not in there. The
/// bytes come from whichever program manages the settings and may be anything.
[[nodiscard]] std::optional<std::int32_t> xsettingsInteger(QByteArrayView property, QByteArrayView name);

/// The same from the settings manager of `x11`, as it stands now; none without a manager.
[[nodiscard]] std::optional<std::int32_t> xsettingsInteger(XcbConnection &x11, QByteArrayView name);

} // namespace tallowby
