#pragma once

#include <QString>

namespace tallowby {

class LoginItem;
class UserDefaults;
enum class LoginItemStatus;

/// Registers the program to start at login, and once only sends the user to the desktop's settings for it.
class LaunchAtLoginManager {
public:
    LaunchAtLoginManager(LoginItem &loginItem, UserDefaults &defaults);

    /// Registers the program unless it is registered already or the user has switched it off.
    void enableIfNeeded();
    /// The user's choice in one of the program's windows. Returns an empty text, or what went wrong.
    [[nodiscard]] QString setEnabled(bool isEnabled);
    [[nodiscard]] LoginItemStatus status() const;
    /// Opens the desktop's settings, the first time in the life of the installation.
    void promptApprovalOnce();

private:
    LoginItem &m_loginItem;
    UserDefaults &m_defaults;
};

} // namespace tallowby
