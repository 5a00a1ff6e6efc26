#include "e2e/WindowList.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include <xcb/xcb.h>

namespace tallowby::test {

namespace {

constexpr std::uint32_t kLongest = 1024;

template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, decltype(&std::free)>;

std::vector<xcb_window_t> windowsIn(const QByteArray &bytes) {
    std::vector<xcb_window_t> windows(std::size_t(bytes.size()) / sizeof(xcb_window_t));
    std::memcpy(windows.data(), bytes.constData(), windows.size() * sizeof(xcb_window_t));
    return windows;
}

} // namespace

WindowList::WindowList(const QString &display)
    : m_connection(xcb_connect(display.toLocal8Bit().constData(), nullptr))
    , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root) {}

WindowList::~WindowList() {
    xcb_disconnect(m_connection);
}

bool WindowList::isActive(const QString &title) const {
    const auto active = windowsIn(property(m_root, "_NET_ACTIVE_WINDOW"));
    const xcb_window_t window = find(title);
    return window != XCB_WINDOW_NONE && !active.empty() && active.front() == window;
}

QRect WindowList::frame(const QString &title) const {
    const xcb_window_t window = find(title);
    const ReplyPtr<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr), &std::free);
    const ReplyPtr<xcb_translate_coordinates_reply_t> corner(
        xcb_translate_coordinates_reply(m_connection, xcb_translate_coordinates(m_connection, window, m_root, 0, 0),
                                        nullptr),
        &std::free);
    return geometry && corner ? QRect(corner->dst_x, corner->dst_y, geometry->width, geometry->height) : QRect();
}

std::uint32_t WindowList::find(const QString &title) const {
    for (const xcb_window_t window : windowsIn(property(m_root, "_NET_CLIENT_LIST"))) {
        if (QString::fromUtf8(property(window, "_NET_WM_NAME")) == title) {
            return window;
        }
    }
    return XCB_WINDOW_NONE;
}

QByteArray WindowList::property(std::uint32_t window, const char *name) const {
    const ReplyPtr<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(m_connection, xcb_intern_atom(m_connection, 0, std::uint16_t(std::strlen(name)), name),
                              nullptr),
        &std::free);
    const ReplyPtr<xcb_get_property_reply_t> reply(
        atom ? xcb_get_property_reply(
                   m_connection,
                   xcb_get_property(m_connection, 0, window, atom->atom, XCB_GET_PROPERTY_TYPE_ANY, 0, kLongest),
                   nullptr)
             : nullptr,
        &std::free);
    return reply ? QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                              xcb_get_property_value_length(reply.get()))
                 : QByteArray();
}

} // namespace tallowby::test
