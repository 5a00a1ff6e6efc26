#pragma once

#include "frames/Samples.h"

#include <QJsonObject>
#include <QObject>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

class QQuickWindow;

namespace tallowby {
class AppDelegate;
namespace test {
class XKeyboard;
}
} // namespace tallowby

namespace tallowby::bench {

/// Runs the whole program in this process, presses its real key on the X server, and takes the time at which the window
/// presents what the key asked for. Times are from the key event to the return of the buffer swap.
class FlipProbe : public QObject {
    Q_OBJECT

public:
    explicit FlipProbe(const QString &display);
    ~FlipProbe() override;

    /// The first turn after the start and `turns` further ones, then `keys` letters into a new block.
    [[nodiscard]] QJsonObject run(int turns, int keys);

private:
    using Clock = std::chrono::steady_clock;

    struct Turn {
        double firstMovingFrame = 0;
        Samples intervals;
        double processorMillisecondsPerFrame = 0;
    };

    [[nodiscard]] bool turnOver(Turn &turn);
    void turnBack();
    [[nodiscard]] Samples typeLetters(int count);
    [[nodiscard]] bool waitFor(const std::function<bool()> &condition) const;
    void watchWindow();
    void frameSynchronized();
    void framePresented();
    [[nodiscard]] std::size_t typedLetters() const;

    std::unique_ptr<AppDelegate> m_app;
    std::unique_ptr<test::XKeyboard> m_keyboard;
    QQuickWindow *m_window = nullptr;

    // Written while the GUI thread waits for the renderer or by the renderer alone; read between turns.
    Clock::time_point m_pressed;
    Clock::time_point m_lastFrame;
    std::atomic<bool> m_isMoving = false;
    std::atomic<bool> m_sawTurn = false;
    std::atomic<bool> m_sawMoving = false;
    std::atomic<std::size_t> m_synchronizedLetters = 0;
    std::atomic<std::size_t> m_presentedLetters = 0;
    std::atomic<double> m_lettersPresentedAfter = 0;
    Turn *m_turn = nullptr;
};

} // namespace tallowby::bench
