#pragma once

#include <QStringList>

#include <optional>

namespace tallowby {

/// What a start of the program is asked to do.
enum class LaunchAction { run, toggle, settings, quit, version, help, selfTest };

/// The one line that says how the program is called.
inline constexpr QLatin1StringView kUsageLine{"usage: tallowby [--toggle | --settings | --quit | --version | --help]"};

/// Reads the arguments after the program's name. None when they are not understood.
[[nodiscard]] std::optional<LaunchAction> parseCommandLine(const QStringList &arguments);

/// The text of `--help`.
[[nodiscard]] QString helpText();

} // namespace tallowby
