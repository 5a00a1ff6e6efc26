#pragma once

#include "frames/CanvasProbe.h"

namespace tallowby::bench {

/// Turns the screen over with the real key and takes the time at which the window presents what the key asked for.
/// Times are from the key event to the return of the buffer swap.
class FlipProbe : public CanvasProbe {
    Q_OBJECT

public:
    using CanvasProbe::CanvasProbe;

    /// The first turn after the start and `turns` further ones, then `keys` letters into a new block.
    [[nodiscard]] QJsonObject run(int turns, int keys);

protected:
    void frameSynchronized() override;
    void framePresented(Clock::time_point now) override;

private:
    struct Turn {
        double firstMovingFrame = 0;
        Samples intervals;
        double processorMillisecondsPerFrame = 0;
    };

    [[nodiscard]] bool turnOver(Turn &turn);
    void turnBack();

    // Written while the GUI thread waits for the renderer or by the renderer alone; read between turns.
    Clock::time_point m_pressed;
    Clock::time_point m_lastFrame;
    std::atomic<bool> m_isMoving = false;
    std::atomic<bool> m_sawTurn = false;
    std::atomic<bool> m_sawMoving = false;
    Turn *m_turn = nullptr;
};

} // namespace tallowby::bench
