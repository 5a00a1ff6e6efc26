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

/// The whole program in this process, with fingers on the real keyboard of its X server, and an eye on its window.
class CanvasProbe : public QObject {
    Q_OBJECT

public:
    explicit CanvasProbe(const QString &display);
    ~CanvasProbe() override;

protected:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] AppDelegate &app() const { return *m_app; }
    [[nodiscard]] test::XKeyboard &keyboard() const { return *m_keyboard; }
    /// Null until it has been watched.
    [[nodiscard]] QQuickWindow *window() const { return m_window; }

    /// Runs the event loop until the condition holds; false when it does not for long.
    [[nodiscard]] bool waitFor(const std::function<bool()> &condition) const;
    static void rest(int milliseconds);
    [[nodiscard]] static double milliseconds(Clock::time_point from, Clock::time_point to);
    [[nodiscard]] static double rounded(double value);

    /// Waits for the window and has both calls below made for each of its frames from now on.
    void watchWindow();
    /// The GUI thread waits; what is on the canvas now is in the frame.
    virtual void frameSynchronized() {}
    /// The frame is on the screen. On the thread that draws.
    virtual void framePresented(Clock::time_point) {}

    /// From the key of a letter to the frame that shows it. The first letter makes the block and does not count; the
    /// others are what typing feels like.
    [[nodiscard]] Samples typeLetters(int count);

private:
    void noteSynchronized();
    void notePresented();
    [[nodiscard]] std::size_t typedLetters() const;

    std::unique_ptr<AppDelegate> m_app;
    std::unique_ptr<test::XKeyboard> m_keyboard;
    QQuickWindow *m_window = nullptr;

    // Written while the GUI thread waits for the renderer or by the renderer alone; read between keys.
    Clock::time_point m_letterPressed;
    std::atomic<std::size_t> m_synchronizedLetters = 0;
    std::atomic<std::size_t> m_presentedLetters = 0;
    std::atomic<double> m_lettersPresentedAfter = 0;
};

} // namespace tallowby::bench
