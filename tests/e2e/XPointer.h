#pragma once

#include <QPoint>

#include <cstdint>

struct xcb_connection_t;

namespace tallowby::test {

/// A hand on the pointer of an X session, through XTEST. When a call returns, the server has taken the movement.
class XPointer {
public:
    /// `display` as in DISPLAY.
    explicit XPointer(const QString &display);
    ~XPointer();
    XPointer(const XPointer &) = delete;
    XPointer &operator=(const XPointer &) = delete;

    void moveTo(QPoint position);
    void click(QPoint position);
    void rightClick(QPoint position);
    /// Presses at `from`, moves in small steps, and lets go at `to`.
    void drag(QPoint from, QPoint to);
    /// Turns the wheel by whole notches; away from the user is positive.
    void turnWheel(int notches);

private:
    void button(std::uint8_t eventType, std::uint8_t number);
    void synchronize();

    xcb_connection_t *m_connection;
};

} // namespace tallowby::test
