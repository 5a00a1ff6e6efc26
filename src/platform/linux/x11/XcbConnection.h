#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>

#include <xcb/xcb.h>

#include <cstdlib>
#include <deque>
#include <memory>
#include <type_traits>
#include <vector>

class QSocketNotifier;

namespace tallowby {

struct XcbFree {
    void operator()(void *memory) const { std::free(memory); }
};

template <typename Reply>
using XcbReply = std::unique_ptr<Reply, XcbFree>;

/// Waits for a request's reply, as in `xcbReply<xcb_query_tree_reply>(connection, xcb_query_tree(connection, window))`.
/// Empty when the server answered with an error: a window of another program may vanish at any moment.
template <auto replyFunction, typename Cookie>
[[nodiscard]] auto xcbReply(xcb_connection_t *connection, Cookie cookie) {
    using Reply = std::remove_pointer_t<decltype(replyFunction(connection, cookie, nullptr))>;
    return XcbReply<Reply>(replyFunction(connection, cookie, nullptr));
}

/// A connection to the X server besides Qt's, whose events come in through Qt's event loop. Errors of requests that
/// nobody waits for are dropped. Without a server every call is harmless and finds nothing. Main thread only.
class XcbConnection final : public QObject {
    Q_OBJECT

public:
    /// Connects to the server that Qt shows this program's windows on; to none where that is not an X server.
    XcbConnection();
    /// Connects to `display`, given as in DISPLAY.
    explicit XcbConnection(const QByteArray &display);
    ~XcbConnection() override;

    XcbConnection(const XcbConnection &) = delete;
    XcbConnection &operator=(const XcbConnection &) = delete;

    /// Whether there is a server at the other end.
    [[nodiscard]] bool isValid() const;
    /// For xcb's own calls. Only with a valid connection.
    [[nodiscard]] xcb_connection_t *handle() const { return m_connection; }
    /// The screen that the display names, and its root window. Only with a valid connection.
    [[nodiscard]] const xcb_screen_t &screen() const { return *m_screen; }
    [[nodiscard]] xcb_window_t root() const { return m_screen->root; }
    [[nodiscard]] int screenNumber() const { return m_screenNumber; }

    [[nodiscard]] xcb_atom_t atom(const QByteArray &name);
    /// A property of 32-bit items, `type` of them and no more than `maximumItems`; empty when it is absent or another.
    [[nodiscard]] std::vector<std::uint32_t> items(xcb_window_t window, const QByteArray &property, xcb_atom_t type,
                                                   std::uint32_t maximumItems);
    /// A property of bytes, cut at `maximumBytes`.
    [[nodiscard]] QByteArray bytes(xcb_window_t window, const QByteArray &property, std::uint32_t maximumBytes);

    /// The server's clock now, for requests that a window manager weighs by their time.
    [[nodiscard]] xcb_timestamp_t serverTime();
    void flush() const;

Q_SIGNALS:
    void eventReceived(const xcb_generic_event_t &event);

private:
    using Event = XcbReply<xcb_generic_event_t>;

    void readEvents();
    void deliverQueuedEvents();
    void deliver(Event event);

    xcb_connection_t *m_connection = nullptr;
    xcb_screen_t *m_screen = nullptr;
    int m_screenNumber = 0;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    xcb_window_t m_clockWindow = XCB_WINDOW_NONE;
    // Events that arrived while `serverTime` waited for its own.
    std::deque<Event> m_deferred;
};

} // namespace tallowby
