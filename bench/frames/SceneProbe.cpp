#include "frames/SceneProbe.h"

#include "frames/ProcessUsage.h"

#include "app/AppDelegate.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "flip/FlipEngine.h"
#include "support/XKeyboard.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QQuickWindow>
#include <QTimer>
#include <QWheelEvent>

#include <X11/keysym.h>
#include <unistd.h>

namespace tallowby::bench {

namespace {

constexpr int kPanSteps = 240;
constexpr int kPanStep = 8;
/// 4 % each: from the smallest zoom to the largest.
constexpr int kZoomSteps = 63;
constexpr int kZoomStep = 4;
/// Enough to get from any zoom to an end of the range.
constexpr int kZoomRange = 16;
constexpr int kSettleMilliseconds = 1'500;

InfiniteCanvasView *canvasIn(QQuickItem &item) {
    if (auto *canvas = qobject_cast<InfiniteCanvasView *>(&item)) {
        return canvas;
    }
    for (QQuickItem *child : item.childItems()) {
        if (InfiniteCanvasView *canvas = canvasIn(*child)) {
            return canvas;
        }
    }
    return nullptr;
}

} // namespace

QJsonObject SceneProbe::run(int keys, int idleSeconds) {
    app().applicationDidFinishLaunching();
    const std::optional<double> firstFrame = openCanvas();
    if (!firstFrame) {
        return {{QStringLiteral("error"), QStringLiteral("the canvas did not take the keyboard")}};
    }
    QJsonObject result{{QStringLiteral("first_interactive_frame_ms"), rounded(*firstFrame)},
                       {QStringLiteral("scene_graph"), window()->sceneGraphBackend()}};
    rest(kSettleMilliseconds);
    m_canvas = canvasIn(*window()->contentItem());
    result.insert(QStringLiteral("idle"), watchRest(idleSeconds));
    bringZoomTo("resetZoom", 1);
    result.insert(QStringLiteral("pan_zoom_1_ms"), pan());
    result.insert(QStringLiteral("key_to_painted_letter_ms"), typeLetters(keys).summary());
    keyboard().tap(XK_Escape);
    bringZoomTo("zoomOut", kZoomRange);
    result.insert(QStringLiteral("pan_zoom_025_ms"), pan());
    result.insert(QStringLiteral("zoom_sweep_ms"), sweepZoom());
    bringZoomTo("zoomIn", kZoomRange);
    result.insert(QStringLiteral("pan_zoom_3_ms"), pan());
    result.insert(QStringLiteral("memory_after_mib"), rounded(ProcessUsage::of(getpid()).proportionalMiB));
    return result;
}

std::optional<double> SceneProbe::openCanvas() {
    const Clock::time_point pressed = Clock::now();
    keyboard().chord(XK_Alt_L, XK_space);
    watchWindow();
    if (!window() || !waitFor([this] { return m_isInteractive.load(); })) {
        return std::nullopt;
    }
    const double elapsed = milliseconds(pressed, m_presentedAt);
    const bool isOver = waitFor([this] { return app().flipEngine()->state() == FlipState::showing; });
    return isOver ? std::optional(elapsed) : std::nullopt;
}

void SceneProbe::frameSynchronized() {
    m_isStepDrawn = true;
    if (!m_isInteractive) {
        const QQuickItem *focus = window()->activeFocusItem();
        m_isStepPresented = focus && window()->isActive() && canvasIn(*window()->contentItem());
    }
}

void SceneProbe::framePresented(Clock::time_point now) {
    if (!m_isInteractive) {
        if (m_isStepPresented) {
            m_presentedAt = now;
            m_isInteractive = true;
        }
    } else if (m_isStepDrawn && !m_isStepPresented) {
        m_presentedAt = now;
        m_isStepPresented = true;
    }
}

void SceneProbe::bringZoomTo(const char *operation, int times) {
    for (int i = 0; i < times; ++i) {
        QMetaObject::invokeMethod(m_canvas, operation);
    }
    rest(kSettleMilliseconds);
}

QJsonObject SceneProbe::pan() {
    // There and back again, so that a small scene stays in sight.
    const auto delta = [](int step) { return QPoint(step < kPanSteps / 2 ? kPanStep : -kPanStep, 0); };
    return series(kPanSteps, delta, Qt::NoModifier);
}

QJsonObject SceneProbe::sweepZoom() {
    return series(
        kZoomSteps, [](int) { return QPoint(0, kZoomStep); }, Qt::ControlModifier);
}

QJsonObject SceneProbe::series(int count, const std::function<QPoint(int)> &delta, Qt::KeyboardModifiers modifiers) {
    const QPointF middle = m_canvas->mapToScene({m_canvas->width() / 2, m_canvas->height() / 2});
    const double processorBefore = ProcessUsage::of(getpid()).processorSeconds;
    Samples steps;
    for (int step = 0; step < count; ++step) {
        // The pixels count; an event without an angle would not be delivered.
        QWheelEvent turn(middle, middle, delta(step), delta(step), Qt::NoButton, modifiers, Qt::ScrollUpdate, false);
        m_isStepDrawn = false;
        m_isStepPresented = false;
        const Clock::time_point start = Clock::now();
        QCoreApplication::sendEvent(window(), &turn);
        if (!waitFor([this] { return m_isStepPresented.load(); })) {
            break;
        }
        steps.add(milliseconds(start, m_presentedAt));
    }
    const double processor = ProcessUsage::of(getpid()).processorSeconds - processorBefore;
    QJsonObject result = steps.summary();
    result.insert(QStringLiteral("processor_ms_per_step"),
                  steps.count() > 0 ? rounded(1000.0 * processor / double(steps.count())) : 0.0);
    return result;
}

QJsonObject SceneProbe::watchRest(int seconds) const {
    const ProcessUsage before = ProcessUsage::of(getpid());
    // An event loop that really sleeps: looking for something every now and then would be measured.
    QEventLoop loop;
    QTimer::singleShot(std::chrono::seconds(seconds), &loop, &QEventLoop::quit);
    loop.exec();
    const ProcessUsage after = ProcessUsage::of(getpid());
    return {{QStringLiteral("percent_of_a_core"),
             rounded(100.0 * (after.processorSeconds - before.processorSeconds) / seconds)},
            {QStringLiteral("resident_mib"), rounded(after.residentMiB)},
            {QStringLiteral("proportional_mib"), rounded(after.proportionalMiB)}};
}

} // namespace tallowby::bench
