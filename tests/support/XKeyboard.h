#pragma once

#include <QString>

#include <cstdint>
#include <vector>

struct xcb_connection_t;

namespace tallowby::test {

/// Fingers on the keyboard of an X session, through XTEST: to the server and every program it is a real keyboard. Key
/// symbols are those of X11/keysym.h (XK_space, XK_Alt_L …); a letter or digit is its own symbol. When a call returns,
/// the server has taken the keys; the programs may still have to.
class XKeyboard {
public:
    /// `display` as in DISPLAY.
    explicit XKeyboard(const QString &display);
    ~XKeyboard();
    XKeyboard(const XKeyboard &) = delete;
    XKeyboard &operator=(const XKeyboard &) = delete;

    /// Holds down, or lets go of, the key that gives `keySymbol`, with or without Shift.
    void press(std::uint32_t keySymbol);
    void release(std::uint32_t keySymbol);
    void tap(std::uint32_t keySymbol);
    /// Taps `keySymbol` while `modifier` is held, as in chord(XK_Alt_L, XK_space).
    void chord(std::uint32_t modifier, std::uint32_t keySymbol);
    /// Types Latin-1 text, holding Shift where a letter needs it; a line break is the Return key.
    void type(QStringView text);

    /// Switches Caps Lock or another lock (XK_Caps_Lock, XK_Num_Lock, XK_Scroll_Lock) as pressing its key does.
    void toggleLock(std::uint32_t lockKeySymbol) { tap(lockKeySymbol); }
    /// Makes the keys of `keySymbols`, and no others, carry the modifiers of one bit (XCB_MOD_MASK_1 …).
    void setModifierKeys(std::uint32_t modifierMask, const std::vector<std::uint32_t> &keySymbols);

private:
    struct Place {
        std::uint8_t keycode = 0;
        bool needsShift = false;
    };
    [[nodiscard]] Place find(std::uint32_t keySymbol) const;
    void fake(std::uint8_t eventType, std::uint8_t keycode);
    void synchronize();

    void writeModifierMap(const std::vector<std::uint8_t> &keycodes);

    xcb_connection_t *m_connection;
    // Empty until it was changed.
    std::vector<std::uint8_t> m_originalModifierMap;
};

} // namespace tallowby::test
