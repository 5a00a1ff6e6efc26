#pragma once

#include <QString>

namespace tallowby {

/// Which of the two looks the program has.
enum class Appearance { system, light, dark };

/// As it is stored.
[[nodiscard]] QString appearanceName(Appearance appearance);
/// `system` for a name that there is not.
[[nodiscard]] Appearance appearanceNamed(const QString &name);

} // namespace tallowby
