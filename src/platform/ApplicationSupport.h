#pragma once

#include <QString>

#include <optional>

namespace tallowby {

/// The program's own data folder, `$XDG_DATA_HOME/Tallowby`, made private to the user (0700) when it does not exist.
/// None when the platform names no place for data.
[[nodiscard]] std::optional<QString> applicationSupportFolder();

} // namespace tallowby
