#include "canvas/tools/HandTool.h"

namespace tallowby {

void HandTool::press(const PointerInput &input) {
    m_pan = {input.screen, input.screen};
}

void HandTool::move(const PointerInput &input) {
    context().panBy(input.screen - m_pan->last);
    m_pan->last = input.screen;
}

void HandTool::release(const PointerInput &input) {
    move(input);
    m_pan.reset();
}

void HandTool::cancel() {
    context().panBy(m_pan->start - m_pan->last);
    m_pan.reset();
}

bool HandTool::interrupt() {
    m_pan.reset();
    return true;
}

Qt::CursorShape HandTool::cursor(const PointerInput &) const {
    return m_pan ? Qt::ClosedHandCursor : Qt::OpenHandCursor;
}

} // namespace tallowby
