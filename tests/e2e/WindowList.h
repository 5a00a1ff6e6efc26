#pragma once

#include <QRect>
#include <QString>

#include <cstdint>

struct xcb_connection_t;

namespace tallowby::test {

/// The windows of an X session as its window manager lists them, looked up by their titles.
class WindowList {
public:
    explicit WindowList(const QString &display);
    ~WindowList();
    WindowList(const WindowList &) = delete;
    WindowList &operator=(const WindowList &) = delete;

    [[nodiscard]] bool has(const QString &title) const { return find(title) != 0; }
    /// Whether it is the one that the user works in.
    [[nodiscard]] bool isActive(const QString &title) const;
    /// Where it lies on the screen; empty when there is none.
    [[nodiscard]] QRect frame(const QString &title) const;

private:
    [[nodiscard]] std::uint32_t find(const QString &title) const;
    [[nodiscard]] QByteArray property(std::uint32_t window, const char *name) const;

    xcb_connection_t *m_connection;
    std::uint32_t m_root = 0;
};

} // namespace tallowby::test
