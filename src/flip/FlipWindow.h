#pragma once

#include <QPointer>
#include <QQuickWindow>

namespace tallowby {

class AppSettings;
class Presentation;

/// The borderless, transparent panel above everything that covers the chosen display. It is hidden and shown again,
/// never closed: a wish to close it, from the window manager or the user, is only passed on.
class FlipWindow : public QQuickWindow {
    Q_OBJECT

public:
    FlipWindow(const AppSettings &settings, Presentation &presentation);

    /// Makes it the hidden panel that it is: as large as the chosen display, refusing the keyboard.
    void configure();
    /// Draws the next frame where nobody sees it and then emits `unseenFrameDrawn`: the first frame that is seen finds
    /// context, shaders and textures made. `configure` cuts it short. False where the platform has no such place.
    [[nodiscard]] bool drawUnseenFrame();

    /// Whether the window takes the keyboard when it is offered.
    [[nodiscard]] bool canBecomeKey() const { return m_canBecomeKey; }
    void setCanBecomeKey(bool canBecomeKey);
    /// Whether the window stands for the program while the program is in front.
    [[nodiscard]] bool canBecomeMain() const { return m_canBecomeMain; }
    void setCanBecomeMain(bool canBecomeMain) { m_canBecomeMain = canBecomeMain; }

    /// While it ignores them, presses, moves, scrolling and touches reach nothing; what was pressed before can still be
    /// released. Keys go to the item with the focus all the same.
    [[nodiscard]] bool ignoresMouseEvents() const { return m_ignoresMouseEvents; }
    void setIgnoresMouseEvents(bool ignores) { m_ignoresMouseEvents = ignores; }

    /// The item that fills the window and is seen. The one before stays in the window unseen, which keeps its scene
    /// graph nodes and its focus, until its owner takes it out. Not owned.
    [[nodiscard]] QQuickItem *contentView() const { return m_contentView; }
    void setContentView(QQuickItem *view);
    /// Puts an item into the window, filling it, without showing it.
    void addUnseen(QQuickItem *view);

    /// Covers the chosen display as it is now and comes to the front, whichever application is active.
    void showForFlip();
    void orderOut();

Q_SIGNALS:
    void closeRequested();
    void unseenFrameDrawn();

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitToContents();
    void endUnseenFrame();

    const AppSettings &m_settings;
    Presentation &m_presentation;
    QPointer<QQuickItem> m_contentView;
    bool m_isDrawingUnseen = false;
    bool m_canBecomeKey = false;
    bool m_canBecomeMain = false;
    bool m_ignoresMouseEvents = false;
};

} // namespace tallowby
