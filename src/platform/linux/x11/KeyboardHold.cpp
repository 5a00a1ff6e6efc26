#include "platform/linux/x11/KeyboardHold.h"

#include "platform/linux/x11/XcbConnection.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace tallowby {

namespace {

QWindowList windowsForTheKeyboard() {
    QWindowList windows = QGuiApplication::topLevelWindows();
    windows.removeIf([](const QWindow *window) {
        return !window->isVisible() || !window->handle() ||
               (window->flags() & (Qt::WindowDoesNotAcceptFocus | Qt::BypassWindowManagerHint));
    });
    return windows;
}

} // namespace

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
    const auto before = std::exchange(m_start, m_scheduler.monotonic());
    if (!before || *m_start - *before > kHaste) {
        m_windowsBefore = windowsForTheKeyboard();
    }
    m_limit = m_scheduler.after(kLimit, [this] { handleLimit(); });
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

void KeyboardHold::handleLimit() {
    // Timers come before events: what has arrived by now may not have been read.
    const bool isLate = m_scheduler.monotonic() - *m_start > kLimit + kGrace / 2;
    QWindow *const window = newWindow();
    if (isLate || (window && !isViewable(*window))) {
        m_limit = m_scheduler.after(kGrace, [this] {
            focusNewWindow();
            release();
        });
        return;
    }
    focusNewWindow();
    release();
}

QWindow *KeyboardHold::newWindow() const {
    const QWindowList windows = windowsForTheKeyboard();
    const auto found =
        std::ranges::find_if(windows, [this](QWindow *window) { return !m_windowsBefore.contains(window); });
    return found != windows.end() ? *found : nullptr;
}

bool KeyboardHold::isViewable(QWindow &window) const {
    const auto attributes = xcbReply<xcb_get_window_attributes_reply>(
        m_x11.handle(), xcb_get_window_attributes(m_x11.handle(), xcb_window_t(window.winId())));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

void KeyboardHold::focusNewWindow() const {
    if (QWindow *const window = newWindow(); window && !programHasInputFocus()) {
        // On the connection that lets the keys go, so that the server does this first. Refused if it is not viewable.
        xcb_set_input_focus(m_x11.handle(), XCB_INPUT_FOCUS_POINTER_ROOT, xcb_window_t(window->winId()),
                            XCB_CURRENT_TIME);
    }
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
