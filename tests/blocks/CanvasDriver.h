#pragma once

#include "blocks/CanvasFactory.h"
#include "canvas/container/BlockContainerView.h"
#include "storage/BlockStorage.h"
#include "storage/DebouncedSaver.h"
#include "support/FakePasteboard.h"
#include "support/LogCapture.h"
#include "support/VirtualScheduler.h"

#include <QInputMethodEvent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <map>
#include <utility>
#include <vector>

namespace tallowby::test {

/// A canvas in a window of 800 × 600 points, and a person in front of it. The canvas origin is at (400, 300).
class CanvasDriver {
public:
    CanvasDriver();
    ~CanvasDriver();
    CanvasDriver(const CanvasDriver &) = delete;
    CanvasDriver &operator=(const CanvasDriver &) = delete;

    /// Puts a block of the kind on the canvas, as if it had been in the file.
    BlockPtr add(BlockType type, const QRectF &frame, const QString &text = {});

    void pointAt(QPointF position);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString &text = {});
    /// One key press for each character, without a turn of the event loop between them.
    void type(const QString &text);
    void click(QPointF position, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void drag(QPointF from, QPointF to, Qt::MouseButton button = Qt::LeftButton);
    /// A drag in pieces.
    void down(QPointF position, Qt::MouseButton button = Qt::LeftButton,
              Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void moveTo(QPointF position);
    void up();
    /// The button goes up while something else has the pointer.
    void loseRelease() { m_button = Qt::NoButton; }
    /// The same with a pen that presses so hard, from 0 to 1.
    void stroke(const std::vector<std::pair<QPointF, double>> &points);
    struct Finger {
        int id;
        QPointF position;
        QEventPoint::State state;
    };
    /// One message of the screen.
    void fingers(const std::vector<Finger> &fingers);
    /// Fingers that go down, move, rest and leave.
    void touch(const std::vector<std::vector<QPointF>> &steps, std::chrono::milliseconds rest = {});
    void drop(QPointF position, const QList<QUrl> &files);
    void hold(Qt::Key key, const QString &text);
    void letGo(Qt::Key key);
    void wheel(QPointF position, QPoint angle, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void pinch(QPointF position, double magnification);
    /// What an input method does: sends to whatever holds the focus, and returns before anything else runs.
    void compose(const QString &preedit, const QString &commit = {});
    void settle();

    /// The item that holds the keyboard.
    [[nodiscard]] QQuickItem *focus() const { return window.activeFocusItem(); }
    [[nodiscard]] bool isEditorFocused() const;
    [[nodiscard]] QString editorText() const;
    [[nodiscard]] std::map<const Block *, BlockContainerView *> containers() const;
    /// The texts of all live blocks in paint order.
    [[nodiscard]] QStringList texts() const;

    LogCapture log;
    VirtualScheduler scheduler;
    BlockStorage storage{scheduler, std::nullopt};
    DebouncedSaver saver{scheduler, storage};
    NotificationCenter notifications;
    FakePasteboard pasteboard;
    CanvasViewModel model{storage, saver, notifications, scheduler, pasteboard};
    QQmlEngine engine;
    QQuickWindow window;
    std::unique_ptr<InfiniteCanvasView> view;

private:
    Qt::MouseButton m_button = Qt::NoButton;
    Qt::KeyboardModifiers m_modifiers;
    QPointF m_position;
};

} // namespace tallowby::test
