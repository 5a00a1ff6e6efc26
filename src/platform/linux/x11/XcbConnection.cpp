#include "platform/linux/x11/XcbConnection.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>
#include <QSocketNotifier>

namespace tallowby {

namespace {

QByteArray displayOfQt() {
    return QGuiApplication::platformName() == u"xcb" ? qgetenv("DISPLAY") : QByteArray();
}

} // namespace

XcbConnection::XcbConnection()
    : XcbConnection(displayOfQt()) {}

XcbConnection::XcbConnection(const QByteArray &display) {
    if (display.isEmpty()) {
        return; // xcb would take the environment's.
    }
    m_connection = xcb_connect(display.constData(), &m_screenNumber);
    if (!isValid()) {
        return;
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
    for (int number = 0; number < m_screenNumber && screens.rem > 1; ++number) {
        xcb_screen_next(&screens);
    }
    m_screen = screens.data;

    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &XcbConnection::readEvents);
    // While a reply is waited for, events behind it are read off the socket too, and it never becomes readable for
    // them.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &XcbConnection::deliverQueuedEvents);
}

XcbConnection::~XcbConnection() {
    m_notifier.reset();
    xcb_disconnect(m_connection); // Also right after a failed attempt, and with none.
}

bool XcbConnection::isValid() const {
    return m_connection && xcb_connection_has_error(m_connection) == 0;
}

xcb_atom_t XcbConnection::atom(const QByteArray &name) {
    const auto known = m_atoms.constFind(name);
    if (known != m_atoms.constEnd()) {
        return *known;
    }
    const auto reply = xcbReply<xcb_intern_atom_reply>(
        m_connection, xcb_intern_atom(m_connection, 0, std::uint16_t(name.size()), name.constData()));
    return reply ? *m_atoms.insert(name, reply->atom) : xcb_atom_t(XCB_ATOM_NONE);
}

std::vector<std::uint32_t> XcbConnection::items(xcb_window_t window, const QByteArray &property, xcb_atom_t type,
                                                std::uint32_t maximumItems) {
    const auto reply = xcbReply<xcb_get_property_reply>(
        m_connection, xcb_get_property(m_connection, 0, window, atom(property), type, 0, maximumItems));
    if (!reply || reply->format != 32 || reply->type != type) {
        return {};
    }
    const auto *first = static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

QByteArray XcbConnection::bytes(xcb_window_t window, const QByteArray &property, std::uint32_t maximumBytes) {
    const auto reply = xcbReply<xcb_get_property_reply>(
        m_connection,
        xcb_get_property(m_connection, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, maximumBytes / 4));
    if (!reply || reply->format != 8) {
        return {};
    }
    return {static_cast<const char *>(xcb_get_property_value(reply.get())), qsizetype(reply->value_len)};
}

xcb_timestamp_t XcbConnection::serverTime() {
    if (m_clockWindow == XCB_WINDOW_NONE) {
        m_clockWindow = xcb_generate_id(m_connection);
        const std::uint32_t propertyChanges = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(m_connection, 0, m_clockWindow, root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &propertyChanges);
    }
    // Adding nothing to a property is the way to have the server tell the time.
    xcb_change_property(m_connection, XCB_PROP_MODE_APPEND, m_clockWindow, atom("_TALLOWBY_CLOCK"), XCB_ATOM_INTEGER,
                        32, 0, nullptr);
    flush();
    while (Event event{xcb_wait_for_event(m_connection)}) {
        if ((event->response_type & ~0x80) == XCB_PROPERTY_NOTIFY) {
            const auto &change = *reinterpret_cast<const xcb_property_notify_event_t *>(event.get());
            if (change.window == m_clockWindow) {
                return change.time;
            }
        }
        m_deferred.push_back(std::move(event));
    }
    return XCB_CURRENT_TIME;
}

void XcbConnection::flush() const {
    xcb_flush(m_connection);
}

void XcbConnection::readEvents() {
    while (Event event{xcb_poll_for_event(m_connection)}) {
        m_deferred.push_back(std::move(event));
    }
    deliverQueuedEvents();
    if (!isValid()) {
        m_notifier->setEnabled(false); // A closed socket stays readable for ever.
    }
}

void XcbConnection::deliverQueuedEvents() {
    for (;;) {
        Event event;
        if (!m_deferred.empty()) {
            event = std::move(m_deferred.front());
            m_deferred.pop_front();
        } else {
            event.reset(xcb_poll_for_queued_event(m_connection));
        }
        if (!event) {
            return;
        }
        deliver(std::move(event));
    }
}

void XcbConnection::deliver(Event event) {
    if (event->response_type != 0) { // 0 is an error, most often of a window that is gone.
        Q_EMIT eventReceived(*event);
        flush();
    }
}

} // namespace tallowby
