#include "e2e/XPointer.h"

#include <QString>

#include <cstdlib>

#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace tallowby::test {

namespace {

constexpr std::uint8_t kLeftButton = 1;
constexpr std::uint8_t kRightButton = 3;
constexpr std::uint8_t kWheelUp = 4;
constexpr std::uint8_t kWheelDown = 5;
constexpr int kDragSteps = 20;

} // namespace

XPointer::XPointer(const QString &display)
    : m_connection(xcb_connect(display.toLocal8Bit().constData(), nullptr)) {}

XPointer::~XPointer() {
    xcb_disconnect(m_connection);
}

void XPointer::moveTo(QPoint position) {
    xcb_test_fake_input(m_connection, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, XCB_WINDOW_NONE,
                        std::int16_t(position.x()), std::int16_t(position.y()), 0);
    synchronize();
}

void XPointer::click(QPoint position) {
    moveTo(position);
    button(XCB_BUTTON_PRESS, kLeftButton);
    button(XCB_BUTTON_RELEASE, kLeftButton);
}

void XPointer::rightClick(QPoint position) {
    moveTo(position);
    button(XCB_BUTTON_PRESS, kRightButton);
    button(XCB_BUTTON_RELEASE, kRightButton);
}

void XPointer::drag(QPoint from, QPoint to) {
    moveTo(from);
    button(XCB_BUTTON_PRESS, kLeftButton);
    for (int step = 1; step <= kDragSteps; ++step) {
        moveTo(from + (to - from) * step / kDragSteps);
    }
    button(XCB_BUTTON_RELEASE, kLeftButton);
}

void XPointer::turnWheel(int notches) {
    const std::uint8_t number = notches > 0 ? kWheelUp : kWheelDown;
    for (int notch = 0; notch < std::abs(notches); ++notch) {
        button(XCB_BUTTON_PRESS, number);
        button(XCB_BUTTON_RELEASE, number);
    }
}

void XPointer::button(std::uint8_t eventType, std::uint8_t number) {
    xcb_test_fake_input(m_connection, eventType, number, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    synchronize();
}

void XPointer::synchronize() {
    std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

} // namespace tallowby::test
