#include "frames/FlipProbe.h"

#include "frames/ProcessUsage.h"

#include "app/AppDelegate.h"
#include "canvas/CanvasViewModel.h"
#include "flip/FlipEngine.h"
#include "flip/FlipWindow.h"
#include "support/XKeyboard.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QQuickWindow>
#include <QThread>

#include <X11/keysym.h>
#include <unistd.h>

#include <cmath>

namespace tallowby::bench {

namespace {

constexpr int kStepTimeout = 15'000;
constexpr int kRestBetweenSteps = 400;
constexpr int kRestBetweenKeys = 60;

double millisecondsBetween(std::chrono::steady_clock::time_point from, std::chrono::steady_clock::time_point to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

void rest(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::usleep(500);
    }
}

double rounded(double value) {
    return std::round(value * 100.0) / 100.0;
}

} // namespace

FlipProbe::FlipProbe(const QString &display)
    : m_app(std::make_unique<AppDelegate>())
    , m_keyboard(std::make_unique<test::XKeyboard>(display)) {}

FlipProbe::~FlipProbe() {
    m_app->applicationWillTerminate();
}

QJsonObject FlipProbe::run(int turns, int keys) {
    m_app->applicationDidFinishLaunching();
    rest(2 * kRestBetweenSteps);

    Turn first;
    Samples firstMovingFrames;
    Samples intervals;
    Samples processorTime;
    if (!turnOver(first)) {
        return {{QStringLiteral("error"), QStringLiteral("the screen did not turn over")}};
    }
    for (int i = 0; i < turns; ++i) {
        turnBack();
        Turn turn;
        if (!turnOver(turn)) {
            return {{QStringLiteral("error"), QStringLiteral("a later turn did not happen")}};
        }
        firstMovingFrames.add(turn.firstMovingFrame);
        intervals.addAll(turn.intervals);
        processorTime.add(turn.processorMillisecondsPerFrame);
    }
    const Samples letters = typeLetters(keys);
    turnBack();
    return {
        {QStringLiteral("first_hotkey_to_moving_frame_ms"), rounded(first.firstMovingFrame)},
        {QStringLiteral("hotkey_to_moving_frame_ms"), firstMovingFrames.summary()},
        {QStringLiteral("turn_frame_interval_ms"), intervals.summary()},
        {QStringLiteral("turn_processor_ms_per_frame"), processorTime.summary()},
        {QStringLiteral("key_to_painted_letter_ms"), letters.summary()},
    };
}

bool FlipProbe::turnOver(Turn &turn) {
    m_turn = &turn;
    m_sawMoving = false;
    m_sawTurn = false;
    m_lastFrame = {};
    const double processorBefore = ProcessUsage::of(getpid()).processorSeconds;
    m_pressed = Clock::now();
    m_keyboard->chord(XK_Alt_L, XK_space);
    watchWindow();
    const bool isOver =
        waitFor([this] { return m_app->flipEngine() && m_app->flipEngine()->state() == FlipState::showing; });
    const double processorAfter = ProcessUsage::of(getpid()).processorSeconds;
    m_turn = nullptr;
    if (turn.intervals.count() > 0) {
        turn.processorMillisecondsPerFrame =
            1000.0 * (processorAfter - processorBefore) / double(turn.intervals.count());
    }
    rest(kRestBetweenSteps);
    return isOver && m_sawMoving;
}

void FlipProbe::turnBack() {
    m_keyboard->chord(XK_Alt_L, XK_space);
    (void) waitFor([this] { return m_app->flipEngine()->state() == FlipState::idle; });
    rest(kRestBetweenSteps);
}

Samples FlipProbe::typeLetters(int count) {
    Samples letters;
    for (int i = 0; i < count; ++i) {
        const std::size_t before = typedLetters();
        m_presentedLetters = before;
        m_pressed = Clock::now();
        m_keyboard->tap(XK_a + std::uint32_t(i % 26));
        if (!waitFor([this, before] { return m_presentedLetters > before; })) {
            break;
        }
        // The first letter makes the block; the others are what typing feels like.
        if (i > 0) {
            letters.add(m_lettersPresentedAfter);
        }
        rest(kRestBetweenKeys);
    }
    return letters;
}

bool FlipProbe::waitFor(const std::function<bool()> &condition) const {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > kStepTimeout) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
    }
    return true;
}

void FlipProbe::watchWindow() {
    if (m_window || !waitFor([this] { return m_app->flipEngine()->window(); })) {
        return;
    }
    m_window = m_app->flipEngine()->window();
    connect(m_window, &QQuickWindow::afterSynchronizing, this, &FlipProbe::frameSynchronized, Qt::DirectConnection);
    connect(m_window, &QQuickWindow::frameSwapped, this, &FlipProbe::framePresented, Qt::DirectConnection);
}

void FlipProbe::frameSynchronized() {
    // The first frame of a turn shows the card at rest, and its clock starts when that has been seen.
    m_isMoving = m_app->flipEngine()->state() == FlipState::animating && m_sawTurn;
    m_sawTurn = m_app->flipEngine()->state() == FlipState::animating;
    m_synchronizedLetters = typedLetters();
}

void FlipProbe::framePresented() {
    const Clock::time_point now = Clock::now();
    if (m_turn && m_isMoving) {
        if (!m_sawMoving) {
            m_turn->firstMovingFrame = millisecondsBetween(m_pressed, now);
            m_sawMoving = true;
        } else {
            m_turn->intervals.add(millisecondsBetween(m_lastFrame, now));
        }
        m_lastFrame = now;
    }
    if (m_synchronizedLetters > m_presentedLetters) {
        m_lettersPresentedAfter = millisecondsBetween(m_pressed, now);
        m_presentedLetters = m_synchronizedLetters.load();
    }
}

std::size_t FlipProbe::typedLetters() const {
    const CanvasViewModel *model = m_app->canvasViewModel();
    const BlockPtr edited = model ? model->focusedBlock() : nullptr;
    return edited ? std::size_t(edited->rawTextOrEmpty().size()) : 0;
}

} // namespace tallowby::bench
