#include "frames/CanvasProbe.h"

#include "app/AppDelegate.h"
#include "canvas/model/CanvasViewModel.h"
#include "flip/FlipEngine.h"
#include "flip/FlipWindow.h"
#include "support/XKeyboard.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QQuickWindow>
#include <QThread>
#include <QTimer>

#include <X11/keysym.h>

#include <cmath>

namespace tallowby::bench {

namespace {

constexpr int kStepTimeout = 15'000;
constexpr int kHeartbeat = 50;
constexpr int kRestBetweenKeys = 60;

} // namespace

CanvasProbe::CanvasProbe(const QString &display)
    : m_app(std::make_unique<AppDelegate>())
    , m_keyboard(std::make_unique<test::XKeyboard>(display)) {}

CanvasProbe::~CanvasProbe() {
    m_app->applicationWillTerminate();
}

bool CanvasProbe::waitFor(const std::function<bool()> &condition) const {
    // It sleeps until something happens: looking again and again would be measured as the program's own work.
    const QDeadlineTimer deadline(kStepTimeout);
    QTimer heartbeat;
    heartbeat.start(kHeartbeat);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void CanvasProbe::rest(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::usleep(500);
    }
}

double CanvasProbe::milliseconds(Clock::time_point from, Clock::time_point to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

double CanvasProbe::rounded(double value) {
    return std::round(value * 100.0) / 100.0;
}

void CanvasProbe::watchWindow() {
    if (m_window || !waitFor([this] { return m_app->flipEngine() && m_app->flipEngine()->window(); })) {
        return;
    }
    m_window = m_app->flipEngine()->window();
    connect(m_window, &QQuickWindow::afterSynchronizing, this, &CanvasProbe::noteSynchronized, Qt::DirectConnection);
    connect(m_window, &QQuickWindow::frameSwapped, this, &CanvasProbe::notePresented, Qt::DirectConnection);
}

void CanvasProbe::noteSynchronized() {
    m_synchronizedLetters = typedLetters();
    frameSynchronized();
}

void CanvasProbe::notePresented() {
    const Clock::time_point now = Clock::now();
    framePresented(now);
    if (m_synchronizedLetters > m_presentedLetters) {
        m_lettersPresentedAfter = milliseconds(m_letterPressed, now);
        m_presentedLetters = m_synchronizedLetters.load();
    }
    QAbstractEventDispatcher::instance(thread())->wakeUp();
}

Samples CanvasProbe::typeLetters(int count) {
    Samples letters;
    for (int i = 0; i < count; ++i) {
        const std::size_t before = typedLetters();
        m_presentedLetters = before;
        m_letterPressed = Clock::now();
        m_keyboard->tap(XK_a + std::uint32_t(i % 26));
        if (!waitFor([this, before] { return m_presentedLetters > before; })) {
            break;
        }
        if (i > 0) {
            letters.add(m_lettersPresentedAfter);
        }
        rest(kRestBetweenKeys);
    }
    return letters;
}

std::size_t CanvasProbe::typedLetters() const {
    const CanvasViewModel *model = m_app->canvasViewModel();
    const BlockPtr edited = model ? model->focusedBlock() : nullptr;
    return edited ? std::size_t(edited->rawTextOrEmpty().size()) : 0;
}

} // namespace tallowby::bench
