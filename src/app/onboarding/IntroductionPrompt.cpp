#include "app/onboarding/IntroductionPrompt.h"

#include "flip/hotkey/HotkeyAdvisor.h"
#include "platform/UserDefaults.h"

namespace tallowby {

namespace {

constexpr QLatin1StringView kKnownTroubleKey{"tallowby.knownHotkeyTrouble"};

} // namespace

IntroductionPrompt::IntroductionPrompt(UserDefaults &defaults, const HotkeyAdvisor &advisor, std::function<void()> show)
    : m_defaults(defaults)
    , m_advisor(advisor)
    , m_show(std::move(show)) {}

void IntroductionPrompt::begin(LaunchKind launch) {
    m_isFirstLaunch = launch == LaunchKind::first;
    if (m_isFirstLaunch) {
        m_show();
    }
    if (m_advisor.isUndecided()) {
        connect(&m_advisor, &HotkeyAdvisor::changed, this, &IntroductionPrompt::lookForTrouble);
    } else {
        lookForTrouble();
    }
}

void IntroductionPrompt::lookForTrouble() {
    if (m_advisor.isUndecided()) {
        return;
    }
    disconnect(&m_advisor, nullptr, this, nullptr);
    const QString trouble = m_advisor.problem().isEmpty() ? m_advisor.limitation() : m_advisor.problem();
    if (m_defaults.string(kKnownTroubleKey) == trouble) {
        return;
    }
    m_defaults.setString(kKnownTroubleKey, trouble);
    if (!trouble.isEmpty() && !m_isFirstLaunch) {
        m_show();
    }
}

} // namespace tallowby
