#include "support/XSession.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

#include <poll.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

namespace tallowby::test {

namespace {

XSession *adoptedSession = nullptr;

constexpr int kStartTimeoutMilliseconds = 20'000;
constexpr int kHeartbeatMilliseconds = 20;

// Without key bindings, which would otherwise take Alt+Space; focus as desktops have it.
constexpr char kOpenboxConfiguration[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <desktops><number>2</number></desktops>
  <keyboard></keyboard>
</openbox_config>
)";

constexpr char kBusConfiguration[] = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, decltype(&std::free)>;

/// A bare connection that waits for events.
class Watcher {
public:
    explicit Watcher(const QString &display)
        : m_connection(xcb_connect(display.toLocal8Bit().constData(), nullptr)) {}
    ~Watcher() { xcb_disconnect(m_connection); }
    Watcher(const Watcher &) = delete;
    Watcher &operator=(const Watcher &) = delete;

    [[nodiscard]] xcb_connection_t *connection() const { return m_connection; }
    [[nodiscard]] xcb_window_t root() const { return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root; }
    [[nodiscard]] xcb_atom_t atom(const char *name) const {
        const ReplyPtr<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(m_connection, xcb_intern_atom(m_connection, 0, std::uint16_t(qstrlen(name)), name),
                                  nullptr),
            &std::free);
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }
    /// The window that a window manager shows its presence with; XCB_WINDOW_NONE without one.
    [[nodiscard]] xcb_window_t windowManagerCheck() const {
        const std::vector<xcb_window_t> windows = windowsOfRoot("_NET_SUPPORTING_WM_CHECK");
        return windows.empty() ? xcb_window_t(XCB_WINDOW_NONE) : windows.front();
    }
    [[nodiscard]] std::vector<xcb_window_t> windowsOfRoot(const char *property) const {
        const ReplyPtr<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(m_connection,
                                   xcb_get_property(m_connection, 0, root(), atom(property), XCB_ATOM_WINDOW, 0, 64),
                                   nullptr),
            &std::free);
        if (!reply) {
            return {};
        }
        const auto *first = static_cast<const xcb_window_t *>(xcb_get_property_value(reply.get()));
        return {first, first + reply->value_len};
    }
    [[nodiscard]] bool exists(xcb_window_t window) const {
        const ReplyPtr<xcb_get_geometry_reply_t> reply(
            xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr), &std::free);
        return reply != nullptr;
    }
    /// A window that wants no input focus.
    [[nodiscard]] xcb_window_t createProbe() const {
        const xcb_window_t window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        const std::uint32_t hints[9] = {1, 0}; // The input hint is given, and it is no.
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32, 9,
                            hints);
        return window;
    }
    [[nodiscard]] bool managesWindow(xcb_window_t window) const {
        const std::vector<xcb_window_t> clients = windowsOfRoot("_NET_CLIENT_LIST");
        return std::ranges::find(clients, window) != clients.end();
    }
    /// Asks `isReady` now, after each event and now and then, until it says yes or the time is over.
    [[nodiscard]] bool waitUntil(const std::function<bool()> &isReady) const {
        QElapsedTimer elapsed;
        elapsed.start();
        while (!isReady()) {
            xcb_flush(m_connection);
            pollfd readable{xcb_get_file_descriptor(m_connection), POLLIN, 0};
            if (elapsed.elapsed() > kStartTimeoutMilliseconds || xcb_connection_has_error(m_connection)) {
                return false;
            }
            ::poll(&readable, 1, kHeartbeatMilliseconds);
            while (xcb_generic_event_t *event = xcb_poll_for_event(m_connection)) {
                std::free(event);
            }
        }
        return true;
    }

private:
    xcb_connection_t *m_connection;
};

} // namespace

XSession::XSession(const Options &options) {
    for (const char *folder : {"cache", "config", "data", "runtime"}) {
        QDir().mkpath(m_folder.file(QString::fromLatin1(folder)));
    }
    QFile::setPermissions(m_folder.file(QStringLiteral("runtime")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    m_environment.insert(QStringLiteral("XDG_SESSION_TYPE"), QStringLiteral("x11"));
    m_environment.insert(QStringLiteral("XDG_CACHE_HOME"), m_folder.file(QStringLiteral("cache")));
    m_environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_folder.file(QStringLiteral("config")));
    m_environment.insert(QStringLiteral("XDG_DATA_HOME"), m_folder.file(QStringLiteral("data")));
    m_environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.file(QStringLiteral("runtime")));
    m_environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                         QStringLiteral("unix:path=") + m_folder.file(QStringLiteral("runtime/no-bus")));

    startServer(options);
    if (options.messageBus) {
        startMessageBus();
    }
    if (options.windowManager) {
        startWindowManager();
    }
    if (options.compositor) {
        startCompositor();
    }
}

XSession::~XSession() {
    m_compositor.end();
    m_windowManager.end();
    m_messageBus.end();
}

void XSession::adoptEnvironment() {
    adoptedSession = this;
    const QStringList variables = m_environment.keys();
    for (const QString &variable : variables) {
        qputenv(variable.toLocal8Bit().constData(), m_environment.value(variable).toLocal8Bit());
    }
}

XSession &XSession::adopted() {
    return *adoptedSession;
}

void XSession::startServer(const Options &options) {
    const QByteArray screen =
        QByteArray::number(options.screenSize.width()) + 'x' + QByteArray::number(options.screenSize.height()) + "x24";
    const QList<QByteArray> arguments{"Xvfb", "-displayfd", "{fd}",      "-screen", "0",       screen,
                                      "-dpi", "96",         "-nolisten", "tcp",     "-noreset"};
    m_server = ChildProcess(arguments + options.serverArguments, QProcessEnvironment::systemEnvironment());
    const QByteArray number = m_server.readLine(kStartTimeoutMilliseconds);
    if (number.isEmpty()) {
        fail(QStringLiteral("Xvfb did not start"));
        return;
    }
    m_display = u':' + QString::fromLatin1(number);
    m_environment.insert(QStringLiteral("DISPLAY"), m_display);
}

void XSession::startMessageBus() {
    QFile configuration(m_folder.file(QStringLiteral("bus.conf")));
    if (configuration.open(QIODevice::WriteOnly)) {
        configuration.write(
            QString::fromLatin1(kBusConfiguration).arg(m_folder.file(QStringLiteral("runtime"))).toUtf8());
        configuration.close();
    }
    m_messageBus = ChildProcess({"dbus-daemon", "--nofork", "--nopidfile", "--print-address={fd}",
                                 "--config-file=" + configuration.fileName().toUtf8()},
                                QProcessEnvironment::systemEnvironment());
    const QByteArray address = m_messageBus.readLine(kStartTimeoutMilliseconds);
    if (address.isEmpty()) {
        fail(QStringLiteral("dbus-daemon did not start"));
        return;
    }
    m_environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QString::fromLatin1(address));
}

void XSession::startWindowManager() {
    if (!m_error.isEmpty()) {
        return;
    }
    QFile configuration(m_folder.file(QStringLiteral("openbox.xml")));
    if (configuration.open(QIODevice::WriteOnly)) {
        configuration.write(kOpenboxConfiguration);
        configuration.close();
    }
    const Watcher watcher(m_display);
    const std::uint32_t propertyChanges = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(watcher.connection(), watcher.root(), XCB_CW_EVENT_MASK, &propertyChanges);

    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(m_environment);
    m_windowManager =
        ChildProcess({"openbox", "--sm-disable", "--config-file", configuration.fileName().toUtf8()}, environment);
    // It shows its presence before it listens, and may miss a window that is shown in between: it is ready once it has
    // taken one in and let it go.
    const xcb_window_t probe = watcher.createProbe();
    const bool isReady = watcher.waitUntil([&] {
        xcb_map_window(watcher.connection(), probe);
        return watcher.managesWindow(probe);
    });
    xcb_destroy_window(watcher.connection(), probe);
    if (!isReady || !watcher.waitUntil([&] { return !watcher.managesWindow(probe); })) {
        fail(QStringLiteral("openbox did not start"));
    }
}

void XSession::endWindowManager() {
    const Watcher watcher(m_display);
    const xcb_window_t window = watcher.windowManagerCheck();
    m_windowManager.end();
    // Until the server has noticed, it hands requests to show a window to nobody.
    QElapsedTimer elapsed;
    elapsed.start();
    while (watcher.exists(window) && elapsed.elapsed() < kStartTimeoutMilliseconds) {
    }
}

void XSession::startCompositor() {
    if (!m_error.isEmpty()) {
        return;
    }
    const Watcher watcher(m_display);
    const xcb_atom_t selection = watcher.atom("_NET_WM_CM_S0");
    const ReplyPtr<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(watcher.connection(), xcb_xfixes_query_version(watcher.connection(), 5, 0),
                                       nullptr),
        &std::free);
    xcb_xfixes_select_selection_input(watcher.connection(), watcher.root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(m_environment);
    m_compositor = ChildProcess({"picom", "--backend", "xrender", "--config", "/dev/null"}, environment);
    const bool isReady = watcher.waitUntil([&] {
        const ReplyPtr<xcb_get_selection_owner_reply_t> reply(
            xcb_get_selection_owner_reply(watcher.connection(),
                                          xcb_get_selection_owner(watcher.connection(), selection), nullptr),
            &std::free);
        return reply && reply->owner != XCB_WINDOW_NONE;
    });
    if (!isReady) {
        fail(QStringLiteral("picom did not start"));
    }
}

void XSession::fail(const QString &what) {
    if (m_error.isEmpty()) {
        m_error = what;
    }
}

} // namespace tallowby::test
