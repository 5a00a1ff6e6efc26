#include "flip/hotkey/HotkeyAdvisor.h"

#include "flip/hotkey/HotkeyFormatter.h"
#include "flip/hotkey/HotkeyListener.h"
#include "platform/AppSettings.h"
#include "platform/VirtualKey.h"
#include "platform/desktop/HotKeyService.h"

#include <algorithm>

namespace tallowby {

namespace {

constexpr std::uint32_t kGraveKey = 50;
constexpr std::uint32_t kF9Key = 101;
constexpr std::uint32_t kF10Key = 109;
constexpr std::uint32_t kF12Key = 111;
/// Of what is written on a key.
constexpr qsizetype kLongestCap = 12;
/// Of no registration that lasts.
constexpr HotKeyID kTrial{0, 0};

QString inWords(std::uint32_t keyCode, std::uint32_t modifiers) {
    return HotkeyFormatter::keyCaps(keyCode, modifiers).join(QStringLiteral(" + "));
}

} // namespace

HotkeyAdvisor::HotkeyAdvisor(AppSettings &settings, HotKeyService &service, Scheduler &scheduler)
    : m_settings(settings)
    , m_service(service)
    , m_scheduler(scheduler) {
    connect(&settings, &AppSettings::hotkeyKeyCodeChanged, this, &HotkeyAdvisor::changed);
    connect(&settings, &AppSettings::hotkeyModifiersChanged, this, &HotkeyAdvisor::changed);
}

void HotkeyAdvisor::setListener(HotkeyListener *listener) {
    m_listener = listener;
    if (listener) {
        // Key and modifiers are stored one after the other, and the pair in between is nobody's wish.
        connect(listener, &HotkeyListener::registrationTried, this,
                [this] { m_pendingRefresh = m_scheduler.after(Scheduler::Duration::zero(), [this] { refresh(); }); });
    }
    refresh();
}

QStringList HotkeyAdvisor::alternatives() const {
    QStringList texts;
    for (const Combination &combination : m_alternatives) {
        texts << inWords(combination.keyCode, combination.modifiers);
    }
    return texts;
}

QString HotkeyAdvisor::combination() const {
    const auto assigned = m_service.assignedKeys();
    return assigned ? *assigned : inWords(m_settings.hotkeyKeyCode(), m_settings.hotkeyModifiers());
}

bool HotkeyAdvisor::isAssigned() const {
    return m_service.assignedKeys().has_value();
}

bool HotkeyAdvisor::isUndecided() const {
    return m_listener && m_listener->isUndecided();
}

QString HotkeyAdvisor::limitation() const {
    return m_service.reachesEverywhere()
               ? QString()
               : tr("On this desktop the key works in front of some programs only. To have it everywhere, give the "
                    "command “tallowby --toggle” a key in the desktop's keyboard settings.");
}

QStringList HotkeyAdvisor::assignedCaps() const {
    const QString keys = m_service.assignedKeys().value_or(QString());
    QStringList caps = keys.split(u'+', Qt::SkipEmptyParts);
    for (QString &cap : caps) {
        cap = cap.trimmed();
    }
    const bool isCombination = std::ranges::all_of(
        caps, [](const QString &cap) { return !cap.isEmpty() && cap.size() <= kLongestCap && !cap.contains(u' '); });
    return isCombination || keys.isEmpty() ? caps : QStringList{keys};
}

void HotkeyAdvisor::choose(int index) {
    if (index < 0 || std::size_t(index) >= m_alternatives.size()) {
        return;
    }
    const Combination chosen = m_alternatives.at(std::size_t(index));
    m_settings.setHotkeyKeyCode(chosen.keyCode);
    m_settings.setHotkeyModifiers(chosen.modifiers);
}

void HotkeyAdvisor::askDesktop() {
    if (isAssigned() && m_listener) {
        m_listener->registerCurrentHotkey();
    }
}

void HotkeyAdvisor::openKeyAssignment() {
    m_service.openKeyAssignment();
}

void HotkeyAdvisor::tryAgain() {
    if (!isAssigned() && m_listener && m_listener->isRunning() && !m_listener->isRegistered()) {
        m_listener->registerCurrentHotkey();
    }
}

void HotkeyAdvisor::refresh() {
    m_problem.clear();
    m_alternatives.clear();
    const bool isMissing =
        m_listener && m_listener->isRunning() && !m_listener->isRegistered() && !m_listener->isUndecided();
    if (isMissing && isAssigned()) {
        m_problem = tr("The desktop has not given Tallowby a key.");
    } else if (isMissing) {
        for (const Combination &candidate : candidates()) {
            if (m_alternatives.size() < kOffers && isFree(candidate)) {
                m_alternatives.push_back(candidate);
            }
        }
        const QString use = m_service.knownUse(m_settings.hotkeyKeyCode(), m_settings.hotkeyModifiers());
        const QString reason = use.isEmpty() ? tr("another program or the desktop itself keeps it")
                                             : tr("this desktop uses it for %1").arg(use);
        m_problem = (m_alternatives.empty() ? tr("%1 does not work: %2. Record another one.")
                                            : tr("%1 does not work: %2. These are free:"))
                        .arg(combination(), reason);
    }
    Q_EMIT changed();
}

std::vector<HotkeyAdvisor::Combination> HotkeyAdvisor::candidates() const {
    using namespace carbon;
    const Combination current{m_settings.hotkeyKeyCode(), m_settings.hotkeyModifiers()};
    // First what the hand is used to, with one more modifier; then what few programs have a use for.
    std::vector<Combination> all{
        {current.keyCode, controlKey | optionKey}, {current.keyCode, optionKey | shiftKey}, {kGraveKey, optionKey}};
    for (const std::uint32_t key : {current.keyCode, keycode::kSpace, kGraveKey, kF12Key, kF10Key, kF9Key}) {
        for (const std::uint32_t modifiers :
             {optionKey, controlKey | optionKey, optionKey | shiftKey, cmdKey | optionKey,
              controlKey | optionKey | shiftKey, cmdKey | controlKey}) {
            const Combination combination{key, modifiers};
            if (std::ranges::find(all, combination) == all.end()) {
                all.push_back(combination);
            }
        }
    }
    std::erase(all, current);
    return all;
}

bool HotkeyAdvisor::isFree(const Combination &combination) const {
    return m_service.registerHotKey(combination.keyCode, combination.modifiers, kTrial).status == 0;
}

} // namespace tallowby
