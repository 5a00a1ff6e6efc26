#pragma once

#include <QLatin1StringView>

#include <span>

namespace tallowby {

/// A desktop's own settings for one thing.
struct SettingsProgram {
    /// As in XDG_CURRENT_DESKTOP.
    QLatin1StringView desktop;
    QLatin1StringView program;
    /// Empty for a program without pages.
    QLatin1StringView page;
};

/// Starts the first of `programs` that is installed and belongs to the desktop that runs. False when there is none.
[[nodiscard]] bool openSettingsProgram(std::span<const SettingsProgram> programs);

/// Opens the desktop's settings for keys, or says that there are none.
void openKeyboardSettings();

} // namespace tallowby
