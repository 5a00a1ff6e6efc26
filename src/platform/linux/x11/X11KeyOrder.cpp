#include "platform/linux/x11/X11KeyOrder.h"

#include <QCoreApplication>

#include <qpa/qwindowsysteminterface.h>
#include <xcb/xcb.h>

namespace tallowby {

X11KeyOrder::X11KeyOrder() {
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11KeyOrder::~X11KeyOrder() {
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool X11KeyOrder::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *) {
    if (eventType == "xcb_generic_event_t") {
        const auto *event = static_cast<const xcb_generic_event_t *>(message);
        if ((event->response_type & ~0x80) == XCB_KEY_PRESS) {
            QWindowSystemInterface::flushWindowSystemEvents();
        }
    }
    return false;
}

} // namespace tallowby
