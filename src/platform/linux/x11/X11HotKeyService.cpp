#include "platform/linux/x11/X11HotKeyService.h"

#include "platform/VirtualKey.h"
#include "platform/linux/DesktopKeys.h"

#include <QPointer>

#include <algorithm>
#include <utility>

// Its C header names a field `explicit`.
#define explicit explicitField // NOLINT(clang-diagnostic-keyword-macro)
#include <xcb/xkb.h>
#undef explicit

namespace tallowby {

namespace {

/// X keycodes start where the codes of the original protocol's devices ended.
constexpr std::uint32_t kEvdevOffset = 8;
constexpr std::int32_t kBadValue = XCB_VALUE;

} // namespace

/// Keeps no more than a name for the combination, so that it may outlive the service.
class X11HotKeyService::Registration final : public HotKeyRegistration {
public:
    Registration(X11HotKeyService *service, std::shared_ptr<Combination> combination)
        : m_service(service)
        , m_combination(std::move(combination)) {}
    ~Registration() override {
        if (m_service) {
            m_service->ungrab(*m_combination);
            std::erase(m_service->m_combinations, m_combination);
        }
    }

private:
    QPointer<X11HotKeyService> m_service;
    std::shared_ptr<Combination> m_combination;
};

X11HotKeyService::X11HotKeyService(std::unique_ptr<XcbConnection> x11, Scheduler &scheduler, Sight sight)
    : m_x11(std::move(x11))
    , m_sight(sight)
    , m_hold(*m_x11, scheduler) {
    if (m_x11->isValid()) {
        selectKeyboardEvents();
        m_modifierMap = ModifierMap(*m_x11);
        connect(m_x11.get(), &XcbConnection::eventReceived, this, &X11HotKeyService::handleEvent);
    }
}

X11HotKeyService::~X11HotKeyService() = default;

std::int32_t X11HotKeyService::installHandler(std::function<void()> pressed) {
    m_pressed = std::move(pressed);
    return m_x11->isValid() ? 0 : kNoServer;
}

void X11HotKeyService::installDecisionHandler(std::function<void(std::int32_t status)> decided) {
    m_decided = std::move(decided);
}

QString X11HotKeyService::knownUse(std::uint32_t keyCode, std::uint32_t modifiers) const {
    return desktopUseOfKeys(keyCode, modifiers);
}

HotKeyResult X11HotKeyService::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID) {
    if (!m_x11->isValid()) {
        return {kNoServer, nullptr};
    }
    const xcb_setup_t *setup = xcb_get_setup(m_x11->handle());
    const auto evdev = evdevFromVirtualKey(keyCode);
    if (!evdev || *evdev + kEvdevOffset < setup->min_keycode || *evdev + kEvdevOffset > setup->max_keycode) {
        return {kBadValue, nullptr};
    }
    auto combination = std::make_shared<Combination>();
    combination->keycode = xcb_keycode_t(*evdev + kEvdevOffset);
    combination->carbonModifiers = modifiers;
    if (const std::int32_t status = grab(*combination); status != 0) {
        return {status, nullptr};
    }
    m_combinations.push_back(combination);
    return {0, std::make_unique<Registration>(this, std::move(combination))};
}

void X11HotKeyService::selectKeyboardEvents() {
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(m_x11->handle(), &xcb_xkb_id);
    if (!extension || !extension->present) {
        return; // The server then reports changes of the keyboard as MappingNotify.
    }
    const auto version = xcbReply<xcb_xkb_use_extension_reply>(
        m_x11->handle(), xcb_xkb_use_extension(m_x11->handle(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION));
    if (!version || !version->supported) {
        return;
    }
    m_xkbEvent = extension->first_event;
    // A held key then repeats as presses only, which tells them from real ones.
    const std::uint32_t detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    (void) xcbReply<xcb_xkb_per_client_flags_reply>(
        m_x11->handle(),
        xcb_xkb_per_client_flags(m_x11->handle(), XCB_XKB_ID_USE_CORE_KBD, detectable, detectable, 0, 0, 0));
    const std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    const std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(m_x11->handle(), XCB_XKB_ID_USE_CORE_KBD, events, 0, events, mapParts, mapParts, nullptr);
    m_x11->flush();
}

void X11HotKeyService::handleEvent(const xcb_generic_event_t &event) {
    const std::uint8_t type = event.response_type & ~0x80;
    if (type == XCB_KEY_PRESS) {
        handleKeyPress(reinterpret_cast<const xcb_key_press_event_t &>(event));
    } else if (type == XCB_KEY_RELEASE) {
        handleKeyRelease(reinterpret_cast<const xcb_key_release_event_t &>(event));
    } else if (type == XCB_MAPPING_NOTIFY || (m_xkbEvent != 0 && type == m_xkbEvent)) {
        handleKeyboardChange();
    }
}

void X11HotKeyService::handleKeyPress(const xcb_key_press_event_t &event) {
    if (m_heldKeycode != 0) {
        if (event.detail == m_heldKeycode) {
            m_hold.passNext(event.time);
        } else {
            // Another key before the hot key is let go, as quick typists do: it belongs to the focused window.
            m_heldKeycode = 0;
            m_hold.handOn(event.time);
        }
        return;
    }
    const bool isOurs = std::ranges::any_of(m_combinations, [&](const auto &combination) {
        return combination->keycode == event.detail && m_modifierMap.isExactly(event.state, combination->modifiers);
    });
    if (!isOurs) {
        m_hold.handOn(event.time); // It was pressed just before its registration ended.
        return;
    }
    m_heldKeycode = event.detail;
    m_hold.begin(event.time);
    if (m_pressed) {
        const auto pressed = m_pressed; // It may install another.
        pressed();
    }
}

void X11HotKeyService::handleKeyRelease(const xcb_key_release_event_t &event) {
    if (event.detail == m_heldKeycode) {
        m_heldKeycode = 0;
        m_hold.ended();
    } else {
        m_hold.passNext(event.time);
    }
}

void X11HotKeyService::handleKeyboardChange() {
    const ModifierMap modifierMap(*m_x11);
    if (modifierMap == m_modifierMap) {
        return; // Changes come in bursts; the grabs are by physical key and need nothing but the modifiers.
    }
    m_modifierMap = modifierMap;
    for (const auto &combination : std::vector(m_combinations)) {
        const bool wasHeld = !combination->grabbed.empty();
        ungrab(*combination);
        const std::int32_t status = grab(*combination);
        if (m_decided && wasHeld != (status == 0)) {
            m_decided(status);
        }
    }
}

std::int32_t X11HotKeyService::grab(Combination &combination) {
    const auto modifiers = m_modifierMap.fromCarbon(combination.carbonModifiers);
    if (!modifiers) {
        return kBadValue;
    }
    combination.modifiers = *modifiers;
    combination.grabbed = m_modifierMap.withLocks(*modifiers);
    std::vector<xcb_void_cookie_t> requests;
    for (const xcb_window_t root : roots()) {
        for (const std::uint16_t mask : combination.grabbed) {
            requests.push_back(xcb_grab_key_checked(m_x11->handle(), 0, root, mask, combination.keycode,
                                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC));
        }
    }
    std::int32_t status = 0;
    for (const xcb_void_cookie_t request : requests) {
        if (const XcbReply<xcb_generic_error_t> error{xcb_request_check(m_x11->handle(), request)}) {
            status = error->error_code;
        }
    }
    if (status != 0) {
        ungrab(combination);
    }
    return status;
}

void X11HotKeyService::ungrab(Combination &combination) {
    // Grabs of others are not touched by this, so those that failed need no care.
    for (const xcb_window_t root : roots()) {
        for (const std::uint16_t mask : std::as_const(combination.grabbed)) {
            xcb_ungrab_key(m_x11->handle(), combination.keycode, root, mask);
        }
    }
    combination.grabbed.clear();
    // A round trip, so that another program can have the combination from now on.
    (void) xcbReply<xcb_get_input_focus_reply>(m_x11->handle(), xcb_get_input_focus(m_x11->handle()));
}

std::vector<xcb_window_t> X11HotKeyService::roots() const {
    std::vector<xcb_window_t> windows;
    for (auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_x11->handle())); screens.rem > 0;
         xcb_screen_next(&screens)) {
        windows.push_back(screens.data->root);
    }
    return windows;
}

} // namespace tallowby
