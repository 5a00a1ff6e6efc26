#include "platform/linux/x11/KeyboardHold.h"

#include "platform/linux/x11/XcbConnection.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

namespace tallowby {

KeyboardHold::KeyboardHold(XcbConnection &x11, Scheduler &scheduler)
    : m_x11(x11)
    , m_scheduler(scheduler) {}

KeyboardHold::~KeyboardHold() {
    QObject::disconnect(m_focusWatch);
}

void KeyboardHold::begin(xcb_timestamp_t time) {
    m_time = time;
    if (programHasInputFocus()) {
        release();
        return;
    }
    m_limit = m_scheduler.after(kLimit, [this] { release(); });
    QObject::disconnect(m_focusWatch);
    m_focusWatch = QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, [this](const QWindow *window) {
        if (window) {
            release();
        }
    });
}

void KeyboardHold::passNext(xcb_timestamp_t time) const {
    allow(XCB_ALLOW_SYNC_KEYBOARD, time);
}

void KeyboardHold::handOn(xcb_timestamp_t time) {
    ended();
    allow(XCB_ALLOW_REPLAY_KEYBOARD, time);
}

void KeyboardHold::ended() {
    m_limit.cancel();
    QObject::disconnect(m_focusWatch);
}

void KeyboardHold::release() {
    ended();
    passNext(m_time);
}

bool KeyboardHold::programHasInputFocus() const {
    const auto focus = xcbReply<xcb_get_input_focus_reply>(m_x11.handle(), xcb_get_input_focus(m_x11.handle()));
    const auto windows = QGuiApplication::allWindows();
    return focus && std::ranges::any_of(windows, [&focus](const QWindow *window) {
               return window->handle() && window->winId() == focus->focus;
           });
}

void KeyboardHold::allow(std::uint8_t mode, xcb_timestamp_t time) const {
    xcb_allow_events(m_x11.handle(), mode, time);
    m_x11.flush();
}

} // namespace tallowby
