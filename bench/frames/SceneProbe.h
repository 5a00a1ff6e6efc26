#pragma once

#include "frames/CanvasProbe.h"

class QQuickItem;

namespace tallowby::bench {

/// Opens the canvas on what is in its file and measures what working on it feels like: the time to the first
/// interactive frame, pans, a zoom sweep, typing, rest and memory.
///
/// The hot key and the letters are real keys of the X server. A step of a pan or of a zoom is one wheel event of a
/// touchpad, which tells exact pixels, handed to the window; one frame is waited for after each. A step's time is from
/// the event to the return of the buffer swap, Qt's wait of up to 5 ms before it draws included.
class SceneProbe : public CanvasProbe {
    Q_OBJECT

public:
    using CanvasProbe::CanvasProbe;

    [[nodiscard]] QJsonObject run(int keys, int idleSeconds);

protected:
    void frameSynchronized() override;
    void framePresented(Clock::time_point now) override;

private:
    /// The hot key to the first frame with the keyboard focus on the canvas, in milliseconds; none when it never came.
    [[nodiscard]] std::optional<double> openCanvas();
    void bringZoomTo(const char *operation, int times);
    [[nodiscard]] QJsonObject pan();
    [[nodiscard]] QJsonObject sweepZoom();
    /// Hands `count` wheel events to the window. Count, quantiles and processor time.
    [[nodiscard]] QJsonObject series(int count, const std::function<QPoint(int)> &delta,
                                     Qt::KeyboardModifiers modifiers);
    [[nodiscard]] QJsonObject watchRest(int seconds) const;

    QQuickItem *m_canvas = nullptr;
    // Written while the GUI thread waits for the renderer or by the renderer alone; read between steps.
    std::atomic<bool> m_isStepDrawn = false;
    std::atomic<bool> m_isStepPresented = false;
    std::atomic<bool> m_isInteractive = false;
    Clock::time_point m_presentedAt;
};

} // namespace tallowby::bench
