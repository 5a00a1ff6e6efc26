#pragma once

#include "app/LaunchHistory.h"

#include <QObject>

#include <functional>

namespace tallowby {

class HotkeyAdvisor;
class UserDefaults;

/// Shows the introduction by itself when a person could not know how to go on: at the first start ever, and at the
/// first start at which the hot key has a trouble that it had not before. Nothing else tells of it, since a desktop
/// need not have a tray. Main thread only.
class IntroductionPrompt : public QObject {
    Q_OBJECT

public:
    IntroductionPrompt(UserDefaults &defaults, const HotkeyAdvisor &advisor, std::function<void()> show);

    /// Once at each start, with the listener's first registration behind it.
    void begin(LaunchKind launch);

private:
    void lookForTrouble();

    UserDefaults &m_defaults;
    const HotkeyAdvisor &m_advisor;
    std::function<void()> m_show;
    bool m_isFirstLaunch = false;
};

} // namespace tallowby
