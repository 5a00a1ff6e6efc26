#pragma once

#include "platform/desktop/HotKeyService.h"
#include "platform/linux/x11/KeyboardHold.h"
#include "platform/linux/x11/ModifierMap.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QObject>

#include <memory>
#include <vector>

namespace tallowby {

class Scheduler;

/// Hot keys as passive grabs of physical keys on the root windows. The status is the X error code: 10 (BadAccess) when
/// another program has the combination, 2 (BadValue) when this keyboard has no such key or modifier; `kNoServer`
/// without an X server.
class X11HotKeyService final : public QObject, public HotKeyService {
    Q_OBJECT

public:
    static constexpr std::int32_t kNoServer = -1;

    /// What of the keyboard the server sees: all of it, or, as a guest of a Wayland session, what is typed into its own
    /// windows.
    enum class Sight { everything, itsOwnWindows };

    /// `x11` is this service's own connection: a press must not wait behind other services' events.
    X11HotKeyService(std::unique_ptr<XcbConnection> x11, Scheduler &scheduler, Sight sight = Sight::everything);
    ~X11HotKeyService() override;

    std::int32_t installHandler(std::function<void()> pressed) override;
    [[nodiscard]] HotKeyResult registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id) override;
    /// Called when a change of the keyboard takes a combination away or brings it back.
    void installDecisionHandler(std::function<void(std::int32_t status)> decided) override;
    [[nodiscard]] QString knownUse(std::uint32_t keyCode, std::uint32_t modifiers) const override;
    [[nodiscard]] bool reachesEverywhere() const override { return m_sight == Sight::everything; }

private:
    class Registration;
    /// One combination as it was asked for, and what the server holds for it now.
    struct Combination {
        xcb_keycode_t keycode = 0;
        std::uint32_t carbonModifiers = 0;
        std::uint16_t modifiers = 0;
        std::vector<std::uint16_t> grabbed;
    };

    void selectKeyboardEvents();
    void handleEvent(const xcb_generic_event_t &event);
    void handleKeyPress(const xcb_key_press_event_t &event);
    void handleKeyRelease(const xcb_key_release_event_t &event);
    void handleKeyboardChange();

    [[nodiscard]] std::int32_t grab(Combination &combination);
    void ungrab(Combination &combination);
    [[nodiscard]] std::vector<xcb_window_t> roots() const;

    std::unique_ptr<XcbConnection> m_x11;
    const Sight m_sight;
    KeyboardHold m_hold;
    ModifierMap m_modifierMap;
    std::uint8_t m_xkbEvent = 0;
    std::function<void()> m_pressed;
    std::function<void(std::int32_t)> m_decided;
    std::vector<std::shared_ptr<Combination>> m_combinations;
    // The hot key that is down now, under whose grab all keys are reported here; 0 for none.
    xcb_keycode_t m_heldKeycode = 0;
};

} // namespace tallowby
