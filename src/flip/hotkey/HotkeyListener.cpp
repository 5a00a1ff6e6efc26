#include "flip/hotkey/HotkeyListener.h"

#include "flip/hotkey/HotkeyFormatter.h"
#include "platform/AppEvents.h"
#include "platform/AppSettings.h"
#include "platform/Log.h"

namespace tallowby {

namespace {

/// Most significant byte first.
constexpr std::uint32_t fourCharacterCode(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (std::size_t index = 0; index < 4; ++index) {
        code = code << 8 | static_cast<unsigned char>(text[index]);
    }
    return code;
}

} // namespace

HotkeyListener::HotkeyListener(NotificationCenter &notifications, const AppSettings &settings, HotKeyService &service,
                               Scheduler &scheduler)
    : m_notifications(notifications)
    , m_settings(settings)
    , m_service(service)
    , m_scheduler(scheduler)
    , m_hotKeyID{fourCharacterCode("TWFL"), 1}
    , m_handlerTarget(std::make_shared<HotkeyListener *>(this)) {
    logLine(u"[HotkeyListener] 🎹 Initialized (Carbon API)");
    m_hotkeyChanged =
        m_notifications.observe(events::tallowbyHotkeyChanged, [this](const Notification &) { handleHotkeyChanged(); });
}

HotkeyListener::~HotkeyListener() {
    stop();
}

void HotkeyListener::start() {
    if (m_isRunning) {
        return;
    }
    const std::int32_t status = m_service.installHandler([target = std::weak_ptr(m_handlerTarget)] {
        if (const auto listener = target.lock()) {
            (*listener)->handlePress();
        }
    });
    if (status != 0) {
        logLine(QStringLiteral("[HotkeyListener] ❌ Failed to install event handler: %1").arg(status));
        return;
    }
    m_service.installDecisionHandler([target = std::weak_ptr(m_handlerTarget)](std::int32_t decision) {
        if (const auto listener = target.lock()) {
            (*listener)->handleDecision(decision);
        }
    });
    m_isRunning = true;
    registerCurrentHotkey();
}

void HotkeyListener::stop() {
    if (!m_isRunning) {
        return;
    }
    m_hotKeyRef.reset();
    m_isUndecided = false;
    m_pendingPress.cancel();
    m_isRunning = false;
    logLine(u"[HotkeyListener] 🛑 Stopped listening");
}

void HotkeyListener::registerCurrentHotkey() {
    m_hotKeyRef.reset();
    m_isUndecided = false;
    if (!m_isRunning) {
        return;
    }
    HotKeyResult result =
        m_service.registerHotKey(m_settings.hotkeyKeyCode(), m_settings.hotkeyModifiers(), m_hotKeyID);
    m_hotKeyRef = std::move(result.registration);
    m_isLost = false;
    m_isUndecided = result.status == kHotKeyUndecided;
    if (!m_isUndecided) {
        logStatus(result.status);
    }
    Q_EMIT registrationTried();
}

void HotkeyListener::handleDecision(std::int32_t status) {
    if (!m_hotKeyRef) {
        return;
    }
    const bool wasRegistered = isRegistered();
    m_isUndecided = status == kHotKeyUndecided;
    m_isLost = status != 0 && !m_isUndecided;
    if (m_isLost && m_service.assignedKeys()) {
        m_hotKeyRef.reset(); // The desktop is asked anew, and only when the user wants it.
    }
    // Other keys for the same registration are no news.
    if (!m_isUndecided && !(wasRegistered && isRegistered())) {
        logStatus(status);
    }
    Q_EMIT registrationTried();
}

void HotkeyListener::logStatus(std::int32_t status) const {
    if (status != 0) {
        logLine(QStringLiteral("[HotkeyListener] ❌ Failed to register hotkey (status %1)").arg(status));
        return;
    }
    logLine(QStringLiteral("[HotkeyListener] ✅ Registered Global Hotkey: %1")
                .arg(HotkeyFormatter::string(m_settings.hotkeyKeyCode(), m_settings.hotkeyModifiers())));
}

void HotkeyListener::handleHotkeyChanged() {
    registerCurrentHotkey();
}

void HotkeyListener::handlePress() {
    // The turn starts after the service's callback has returned. A second press before that would only be dropped.
    m_pendingPress =
        m_scheduler.after(Scheduler::Duration::zero(), [this] { m_notifications.post(events::flipToggleRequested); });
}

} // namespace tallowby
