#pragma once

#include "platform/Scheduler.h"

#include <xcb/xcb.h>

#include <QMetaObject>
#include <QWindow>

#include <chrono>
#include <optional>

namespace tallowby {

class XcbConnection;

/// Keeps back what is typed right after a hot key until the window that it brings up can take it, so that no letter
/// goes to the window that had the keyboard before.
///
/// The hot key's grab is synchronous: the server stops handing out keys at the press. They go on, in order, as soon as
/// this program has the input focus, at the latest after `kLimit`, or `kGrace` later when its window is just coming up.
/// A window that is there by then but was not given the focus takes it first. Should the program end in between, the
/// server lets the keys go by itself.
class KeyboardHold {
public:
    static constexpr std::chrono::milliseconds kLimit{250};
    /// Added once when the window that comes up cannot take the focus yet, or the program was too busy to look in time:
    /// the window manager's answer may be waiting to be read.
    static constexpr std::chrono::milliseconds kGrace{150};
    /// A press so soon after another is the same wish once more, and waits for the same window.
    static constexpr std::chrono::seconds kHaste{1};

    KeyboardHold(XcbConnection &x11, Scheduler &scheduler);
    ~KeyboardHold();

    /// The server has just stopped at a press of this time.
    void begin(xcb_timestamp_t time);
    /// Lets the next key through, which is reported to the holder of the grab, and stops again.
    void passNext(xcb_timestamp_t time) const;
    /// Gives the key that was just reported, and all that follow, to the window with the input focus; ends the grab.
    void handOn(xcb_timestamp_t time);
    /// The grab has ended with the release of its key.
    void ended();

private:
    void handleLimit();
    void release();
    /// Of the windows that have come up since the press, the one that can take the keyboard; null for none.
    [[nodiscard]] QWindow *newWindow() const;
    [[nodiscard]] bool isViewable(QWindow &window) const;
    void focusNewWindow() const;
    [[nodiscard]] bool programHasInputFocus() const;
    void allow(std::uint8_t mode, xcb_timestamp_t time) const;

    XcbConnection &m_x11;
    Scheduler &m_scheduler;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
    std::optional<Scheduler::Duration> m_start;
    /// The program's windows that could take the keyboard at the press. Only compared with, since they may be gone.
    QWindowList m_windowsBefore;
    ScheduledCall m_limit;
    QMetaObject::Connection m_focusWatch;
};

} // namespace tallowby
