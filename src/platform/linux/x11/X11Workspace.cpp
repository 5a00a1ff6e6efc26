#include "platform/linux/x11/X11Workspace.h"

#include "platform/linux/x11/XcbConnection.h"

#include <QCoreApplication>

#include <utility>

namespace tallowby {

namespace {

constexpr std::uint32_t kMaximumNameBytes = 1024;

} // namespace

X11Workspace::X11Workspace(XcbConnection &x11)
    : m_x11(x11)
    , m_windowManager(x11) {
    if (!m_x11.isValid()) {
        return;
    }
    const std::uint32_t propertyChanges = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_x11.handle(), m_x11.root(), XCB_CW_EVENT_MASK, &propertyChanges);
    m_x11.flush();
    connect(&m_x11, &XcbConnection::eventReceived, this, &X11Workspace::handleEvent);
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() const {
    if (!m_x11.isValid()) {
        return std::nullopt;
    }
    const xcb_window_t window = m_windowManager.activeWindow();
    if (window == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    return RunningApplication{bundleIdentifier(window), window};
}

QString X11Workspace::mainBundleIdentifier() const {
    return QCoreApplication::applicationName(); // Qt makes it the class part of WM_CLASS.
}

void X11Workspace::activate(const RunningApplication &application) {
    const auto window = xcb_window_t(application.window);
    // The server gives numbers of windows that are gone to new ones, which may be anybody's.
    if (!m_x11.isValid() || window == XCB_WINDOW_NONE || bundleIdentifier(window) != application.bundleIdentifier) {
        return;
    }
    m_windowManager.activate(window);
}

void X11Workspace::handleEvent(const xcb_generic_event_t &event) {
    if ((event.response_type & ~0x80) != XCB_PROPERTY_NOTIFY) {
        return;
    }
    const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
    if (change.window != m_x11.root() || change.atom != m_x11.atom("_NET_ACTIVE_WINDOW")) {
        return;
    }
    const auto application = frontmostApplication();
    const auto window = application ? xcb_window_t(application->window) : xcb_window_t(XCB_WINDOW_NONE);
    if (std::exchange(m_announced, window) != window && application) {
        Q_EMIT applicationActivated(*application);
    }
}

QString X11Workspace::bundleIdentifier(xcb_window_t window) const {
    const QByteArray applicationID = m_x11.bytes(window, "_GTK_APPLICATION_ID", kMaximumNameBytes);
    if (!applicationID.isEmpty()) {
        return QString::fromUtf8(applicationID);
    }
    // Two texts, each closed by a zero: instance and class.
    const QByteArrayList names = m_x11.bytes(window, "WM_CLASS", kMaximumNameBytes).split('\0');
    return names.size() > 1 ? QString::fromLocal8Bit(names.at(1)) : QString();
}

} // namespace tallowby
