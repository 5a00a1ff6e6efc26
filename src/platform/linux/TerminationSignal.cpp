#include "platform/desktop/InstanceBus.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace tallowby {

namespace {

/// A signal arrives in the middle of anything, where little more than write() is allowed: it leaves a byte here, and
/// the event loop finds it.
int wakeUpPipe[2] = {-1, -1};

extern "C" void leaveByte(int) {
    const int error = errno;
    const char byte = 0;
    // A full pipe holds a byte already, which is all that is needed.
    [[maybe_unused]] const ssize_t written = ::write(wakeUpPipe[1], &byte, 1);
    errno = error;
}

} // namespace

void onTerminationSignal(std::function<void()> handler) {
    if (::pipe2(wakeUpPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // The signals keep ending the process at once.
    }
    auto *notifier = new QSocketNotifier(wakeUpPipe[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [handler = std::move(handler)] {
        char bytes[64];
        while (::read(wakeUpPipe[0], bytes, sizeof bytes) > 0) {
        }
        handler();
    });

    struct sigaction action {};
    action.sa_handler = &leaveByte;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGTERM, &action, nullptr);
    ::sigaction(SIGINT, &action, nullptr);
    // The end of a session sends it right after SIGTERM, and a terminal that closes sends it alone. Whoever started us
    // with it ignored wants us to live on.
    struct sigaction before {};
    if (::sigaction(SIGHUP, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
        ::sigaction(SIGHUP, &action, nullptr);
    }
}

} // namespace tallowby
