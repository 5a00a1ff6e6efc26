#include "canvas/view/typing/InputMethodHandover.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QQuickItem>

#include <chrono>

namespace tallowby {

namespace {

/// An engine answers within some milliseconds. Nobody composes the same word again in this time.
constexpr std::chrono::milliseconds kLateAnswer{200};

} // namespace

InputMethodHandover::InputMethodHandover(Scheduler &scheduler)
    : m_scheduler(scheduler) {}

void InputMethodHandover::finish(QQuickItem *item) {
    const QString preedit = item ? item->property("preeditText").toString() : QString();
    if (preedit.isEmpty()) {
        return;
    }
    QInputMethodEvent event;
    event.setCommitString(preedit);
    QCoreApplication::sendEvent(item, &event);
    discard(preedit);
}

void InputMethodHandover::discard(const QString &preedit) {
    m_taken = preedit;
    QCoreApplication::instance()->installEventFilter(this);
    m_forgetting = m_scheduler.after(kLateAnswer, [this] { QCoreApplication::instance()->removeEventFilter(this); });
    m_isResetting = true;
    QGuiApplication::inputMethod()->reset();
    m_isResetting = false;
}

bool InputMethodHandover::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() != QEvent::InputMethod) {
        return QObject::eventFilter(watched, event);
    }
    if (m_isResetting) {
        return true;
    }
    const auto &input = *static_cast<QInputMethodEvent *>(event);
    const bool isEcho = input.commitString() == m_taken && input.preeditString().isEmpty();
    if (isEcho || !input.preeditString().isEmpty()) {
        stopForgetting();
    }
    return isEcho;
}

void InputMethodHandover::stopForgetting() {
    m_forgetting.cancel();
    QCoreApplication::instance()->removeEventFilter(this);
}

} // namespace tallowby
