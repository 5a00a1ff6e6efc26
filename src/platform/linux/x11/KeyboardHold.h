#pragma once

#include "platform/Scheduler.h"

#include <xcb/xcb.h>

#include <QMetaObject>

#include <chrono>

namespace tallowby {

class XcbConnection;

/// Keeps back what is typed right after a hot key until the window that it brings up can take it, so that no letter
/// goes to the window that had the keyboard before.
///
/// The hot key's grab is synchronous: the server stops handing out keys at the press. They go on, in order, as soon as
/// this program has the input focus, at the latest after `kLimit`. Should the program end in between, the server lets
/// them go by itself.
class KeyboardHold {
public:
    static constexpr std::chrono::milliseconds kLimit{250};

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
    void release();
    [[nodiscard]] bool programHasInputFocus() const;
    void allow(std::uint8_t mode, xcb_timestamp_t time) const;

    XcbConnection &m_x11;
    Scheduler &m_scheduler;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
    ScheduledCall m_limit;
    QMetaObject::Connection m_focusWatch;
};

} // namespace tallowby
