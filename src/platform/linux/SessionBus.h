#pragma once

#include <QDBusConnection>

namespace tallowby {

/// A connection of its own to the user's session bus, under a name that is unique in this process. It is not connected
/// when there is no bus; none is started for it.
[[nodiscard]] QDBusConnection connectToSessionBus();

} // namespace tallowby
