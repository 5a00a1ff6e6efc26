#include "app/onboarding/OnboardingWindowController.h"

#include "app/PermissionManager.h"
#include "flip/hotkey/HotkeyFormatter.h"
#include "platform/AppEvents.h"
#include "platform/AppSettings.h"
#include "platform/VirtualKey.h"
#include "platform/desktop/MotionPreference.h"

#include <QKeyEvent>
#include <QQuickWindow>

namespace tallowby {

namespace {

/// The bit of a modifier's own key; 0 for any other key.
std::uint32_t modifierOf(const QKeyEvent &event) {
    switch (event.key()) {
    case Qt::Key_Alt:
        return carbon::optionKey;
    case Qt::Key_Control:
        return carbon::controlKey;
    case Qt::Key_Shift:
        return carbon::shiftKey;
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return carbon::cmdKey;
    default:
        return 0;
    }
}

} // namespace

OnboardingWindowController::OnboardingWindowController(const WindowServices &window, const OnboardingServices &services)
    : WindowController(window, QStringLiteral("OnboardingWindow"))
    , m_services(services) {
    connect(&services.permissionManager, &PermissionManager::accessibilityStateChanged, this,
            &OnboardingWindowController::stepChanged);
    connect(&services.hotkeyAdvisor, &HotkeyAdvisor::changed, this, &OnboardingWindowController::stepChanged);
    connect(&services.hotkeyAdvisor, &HotkeyAdvisor::changed, this, &OnboardingWindowController::keysChanged);
    m_observations.push_back(
        services.notifications.observe(events::flipComplete, [this](const auto &) { setCanvasUp(true); }));
    m_observations.push_back(
        services.notifications.observe(events::flipClosed, [this](const auto &) { setCanvasUp(false); }));
}

OnboardingWindowController::Step OnboardingWindowController::step() const {
    if (m_services.permissionManager.accessibilityState() != PermissionState::granted) {
        return Step::Permission;
    }
    if (!m_services.hotkeyAdvisor.problem().isEmpty()) {
        return Step::OtherKey;
    }
    if (!m_services.hotkeyAdvisor.limitation().isEmpty()) {
        return Step::SomePlaces;
    }
    if (!m_wasTried) {
        return Step::TryIt;
    }
    return m_services.hasNotes() ? Step::Done : Step::WriteNote;
}

QList<OnboardingKey> OnboardingWindowController::keys() const {
    if (const QStringList assigned = m_services.hotkeyAdvisor.assignedCaps(); !assigned.isEmpty()) {
        QList<OnboardingKey> keys;
        for (const QString &cap : assigned) {
            keys << OnboardingKey{cap, m_isCanvasUp};
        }
        return keys;
    }
    const std::uint32_t modifiers = m_services.settings.hotkeyModifiers();
    const std::uint32_t keyCode = m_services.settings.hotkeyKeyCode();
    const QStringList caps = HotkeyFormatter::keyCaps(keyCode, modifiers);
    QList<OnboardingKey> keys;
    for (const std::uint32_t modifier : {carbon::controlKey, carbon::optionKey, carbon::shiftKey, carbon::cmdKey}) {
        if (modifiers & modifier) {
            keys << OnboardingKey{caps.at(keys.size()), m_isCanvasUp || (m_heldModifiers & modifier) != 0};
        }
    }
    keys << OnboardingKey{caps.last(), m_isCanvasUp || m_heldKeys.contains(keyCode)};
    return keys;
}

bool OnboardingWindowController::isTurned() const {
    const QList<OnboardingKey> all = keys();
    return std::ranges::all_of(all, &OnboardingKey::isLit);
}

bool OnboardingWindowController::movesFreely() const {
    return !m_services.motionPreference.prefersReducedMotion();
}

void OnboardingWindowController::askForPermission() {
    m_services.permissionManager.requestAccessibilityPermission();
}

void OnboardingWindowController::prepareToShow() {
    window()->installEventFilter(this);
    m_services.hotkeyAdvisor.tryAgain();
    m_services.startAtLogin.refresh();
}

bool OnboardingWindowController::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        takeKey(*static_cast<QKeyEvent *>(event), event->type() == QEvent::KeyPress);
        break;
    case QEvent::FocusOut:
        letGoOfAllKeys();
        break;
    default:
        break;
    }
    return WindowController::eventFilter(watched, event);
}

void OnboardingWindowController::takeKey(const QKeyEvent &event, bool isDown) {
    if (event.isAutoRepeat()) {
        return;
    }
    if (const std::uint32_t modifier = modifierOf(event)) {
        m_heldModifiers = isDown ? m_heldModifiers | modifier : m_heldModifiers & ~modifier;
    } else if (const auto key = virtualKeyByPlace(event)) {
        if (isDown) {
            m_heldKeys.insert(*key);
        } else {
            m_heldKeys.erase(*key);
        }
    }
    Q_EMIT keysChanged();
}

void OnboardingWindowController::letGoOfAllKeys() {
    m_heldModifiers = 0;
    m_heldKeys.clear();
    Q_EMIT keysChanged();
}

void OnboardingWindowController::setCanvasUp(bool isUp) {
    m_isCanvasUp = isUp;
    m_wasTried = m_wasTried || isUp;
    Q_EMIT keysChanged();
    Q_EMIT stepChanged();
}

} // namespace tallowby
