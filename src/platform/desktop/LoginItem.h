#pragma once

#include <QString>

namespace tallowby {

/// Whether the program starts when the user logs in. The numbers are those that log lines show.
enum class LoginItemStatus {
    notRegistered = 0,
    enabled = 1,
    requiresApproval = 2, ///< the user switched it off in the desktop's settings; only the user switches it on again
    notFound = 3,         ///< the program file is not where a login could start it
};

/// The desktop's list of programs to start at login. Main thread only.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    [[nodiscard]] virtual LoginItemStatus status() const = 0;
    /// Registers the program. Returns an empty text, or what went wrong.
    [[nodiscard]] virtual QString registerItem() = 0;
    /// The user's own choice, made in the program: switches it off so that it stays off, or on again, whoever had
    /// switched it off. Returns an empty text, or what went wrong.
    [[nodiscard]] virtual QString setEnabledByUser(bool isEnabled) = 0;
    /// Opens the desktop's own settings for programs that start at login.
    virtual void openSystemSettings() = 0;
};

} // namespace tallowby
