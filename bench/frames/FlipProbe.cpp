#include "frames/FlipProbe.h"

#include "frames/ProcessUsage.h"

#include "app/AppDelegate.h"
#include "flip/FlipEngine.h"
#include "support/XKeyboard.h"

#include <X11/keysym.h>
#include <unistd.h>

namespace tallowby::bench {

namespace {

constexpr int kRestBetweenSteps = 400;

} // namespace

QJsonObject FlipProbe::run(int turns, int keys) {
    app().applicationDidFinishLaunching();
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
    keyboard().chord(XK_Alt_L, XK_space);
    watchWindow();
    const bool isOver =
        waitFor([this] { return app().flipEngine() && app().flipEngine()->state() == FlipState::showing; });
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
    keyboard().chord(XK_Alt_L, XK_space);
    (void) waitFor([this] { return app().flipEngine()->state() == FlipState::idle; });
    rest(kRestBetweenSteps);
}

void FlipProbe::frameSynchronized() {
    // The first frame of a turn shows the card at rest, and its clock starts when that has been seen.
    m_isMoving = app().flipEngine()->state() == FlipState::animating && m_sawTurn;
    m_sawTurn = app().flipEngine()->state() == FlipState::animating;
}

void FlipProbe::framePresented(Clock::time_point now) {
    if (!m_turn || !m_isMoving) {
        return;
    }
    if (!m_sawMoving) {
        m_turn->firstMovingFrame = milliseconds(m_pressed, now);
        m_sawMoving = true;
    } else {
        m_turn->intervals.add(milliseconds(m_lastFrame, now));
    }
    m_lastFrame = now;
}

} // namespace tallowby::bench
