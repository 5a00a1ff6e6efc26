#pragma once

#include <QString>

#include <optional>

namespace tallowby::MediaStorage {

/// The one folder of recorded sound and film, `Tallowby/media` in the user's data; blocks name its files without a
/// path. Made, for the user alone, when it is not there; one that cannot be made is still named. None when the platform
/// names no place for data.
[[nodiscard]] std::optional<QString> directory();

/// Where a recording of that name is. None when it is no bare name, which a record from elsewhere may carry, or when
/// there is no such file in the folder itself.
[[nodiscard]] std::optional<QString> existingFile(const QString &name);

} // namespace tallowby::MediaStorage
