#pragma once

#include <QAbstractNativeEventFilter>

namespace tallowby {

/// Keeps typed text in order. Qt hands a key to the input method as soon as it reads it from the server, but queues
/// what the input method lets pass: of keys that arrive in one go, a composed letter would overtake the plain ones
/// before it. Here each key press has all earlier ones delivered first. Lives on the main thread.
class X11KeyOrder final : public QAbstractNativeEventFilter {
public:
    X11KeyOrder();
    ~X11KeyOrder() override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
};

} // namespace tallowby
