#pragma once

#include "canvas/container/ContainerRows.h"
#include "canvas/drawing/LiveSketchState.h"
#include "canvas/model/BlockKindRegistry.h"
#include "canvas/model/CanvasViewModel.h"
#include "canvas/overlay/menu/MenuEntriesModel.h"
#include "canvas/tools/ToolBox.h"
#include "canvas/view/Viewport.h"
#include "canvas/view/typing/InputMethodHandover.h"
#include "canvas/view/typing/LeadingKeys.h"
#include "canvas/view/typing/NoteColumn.h"
#include "platform/Scheduler.h"

#include <QHash>
#include <QQmlComponent>
#include <QQuickItem>

#include <array>
#include <functional>
#include <memory>

class QNativeGestureEvent;

namespace tallowby {

class BlockBody;
class BlockContainerView;
class CaretFollower;
class ImagePicker;
class MotionPreference;
/// The canvas surface: owns the viewport, hands pointer, pen and fingers to the tool in use, and turns keys, input
/// methods and drops into operations of the model. The QML file that is made on it composes the looks. It is a focus
/// scope; whoever shows it gives it focus.
class InfiniteCanvasView : public QQuickItem, private ToolContext {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::CanvasViewModel *viewModel READ viewModelPointer CONSTANT)
    /// Screen points per canvas point.
    Q_PROPERTY(qreal zoom READ zoom NOTIFY viewportChanged)
    /// Where the canvas origin is drawn, on a whole device pixel.
    Q_PROPERTY(QPointF origin READ origin NOTIFY viewportChanged)
    /// Where the canvas origin lies, seen from the middle of the view; in screen points.
    Q_PROPERTY(QPointF offset READ offset NOTIFY viewportChanged)
    /// The blocks that have a container, in paint order.
    Q_PROPERTY(tallowby::VisibleBlocksModel *containerRows READ containerRows CONSTANT)
    Q_PROPERTY(tallowby::LiveSketchState *liveSketch READ liveSketchPointer CONSTANT)
    /// The rectangle that is being drawn to select what it touches, on screen; empty when none is.
    Q_PROPERTY(QRectF marquee READ marquee NOTIFY marqueeChanged)
    /// A button or a finger is down on the canvas.
    Q_PROPERTY(bool isGestureRunning READ isGestureRunning NOTIFY isGestureRunningChanged)
    Q_PROPERTY(bool isHelpVisible READ isHelpVisible WRITE setIsHelpVisible NOTIFY isHelpVisibleChanged)
    Q_PROPERTY(bool isSearchVisible READ isSearchVisible WRITE setIsSearchVisible NOTIFY isSearchVisibleChanged)
    /// Made over each selected block.
    Q_PROPERTY(
        QQmlComponent *selectionOutline READ selectionOutline WRITE setSelectionOutline NOTIFY selectionOutlineChanged)
    /// How the key that leaves the canvas is written; empty when there is none.
    Q_PROPERTY(QString closeShortcut READ closeShortcut WRITE setCloseShortcut NOTIFY closeShortcutChanged)

public:
    explicit InfiniteCanvasView(QQuickItem *parent = nullptr);
    ~InfiniteCanvasView() override;

    /// Once, before the component is complete. The view must not outlive what it is given.
    void attach(CanvasViewModel &viewModel, const BlockKindRegistry &blockKinds, NotificationCenter &notifications);

    /// Asked for each movement of its own; none means that everything moves. Must outlive the view.
    void setMotionPreference(const MotionPreference *preference) { m_motionPreference = preference; }
    [[nodiscard]] bool prefersReducedMotion() const;

    [[nodiscard]] CanvasViewModel &viewModel() const override { return *m_viewModel; }
    [[nodiscard]] CanvasViewModel *viewModelPointer() const { return m_viewModel; }
    [[nodiscard]] const BlockKindRegistry &blockKinds() const { return *m_blockKinds; }
    [[nodiscard]] const Viewport &viewport() const override { return m_viewport; }
    [[nodiscard]] qreal zoom() const { return m_viewport.scale(); }
    [[nodiscard]] QPointF origin() const;
    [[nodiscard]] QPointF offset() const { return m_viewport.offset(); }
    [[nodiscard]] VisibleBlocksModel *containerRows() { return m_containerRows.model(); }
    [[nodiscard]] LiveSketchState *liveSketchPointer() { return &m_liveSketch; }
    [[nodiscard]] QRectF marquee() const;
    [[nodiscard]] bool isGestureRunning() const { return m_isGestureRunning; }
    [[nodiscard]] bool isHelpVisible() const { return m_isHelpVisible; }
    void setIsHelpVisible(bool isVisible);
    [[nodiscard]] bool isSearchVisible() const { return m_isSearchVisible; }
    void setIsSearchVisible(bool isVisible);
    [[nodiscard]] NotificationCenter &notifications() const { return *m_notifications; }
    /// The handles as they stand on screen; none while there are none to be dragged.
    [[nodiscard]] std::optional<HandleLayout> handles();
    [[nodiscard]] QQmlComponent *selectionOutline() const { return m_selectionOutline; }
    void setSelectionOutline(QQmlComponent *component);
    [[nodiscard]] const QString &closeShortcut() const { return m_closeShortcut; }
    void setCloseShortcut(const QString &text);

    Q_INVOKABLE void zoomIn();
    Q_INVOKABLE void zoomOut();
    Q_INVOKABLE void resetZoom();
    /// Moves the paper so that its origin lies there, seen from the middle of the view.
    Q_INVOKABLE void jumpTo(QPointF offset);
    void pickImage(QPointF canvasPoint) override;
    /// Asks for a picture, or for a place to save a file to, and hands over what is chosen.
    void pickImage(const std::function<void(const QUrl &)> &chosen);
    void pickPlace(const QString &fileName, const std::function<void(const QUrl &)> &chosen);
    /// Asks for the way back to the desktop.
    Q_INVOKABLE void requestClose();

    /// For the containers: the body of each kind, compiled once; whether they are there; that a body has opened.
    [[nodiscard]] QQmlComponent &bodyComponent(BlockType type);
    void rememberContainer(BlockContainerView &container);
    void forgetContainer(BlockContainerView &container);
    void editorOpened();
    /// What an input method is composing goes into its text, as it stands. Whoever changes or leaves a text asks for
    /// this first.
    void finishComposing();
    /// How far a block is drawn from its place while it is dragged, in canvas points; none while it is not.
    [[nodiscard]] std::optional<QPointF> dragOffsetOf(const Block &block) const;
    /// Of the selected blocks, which are dragged all together.
    [[nodiscard]] QPointF dragOffset() const { return m_draggedBlocks.empty() ? QPointF() : m_dragOffset; }
    void blockMoved(const Block &block);
    /// Those of the block's kind, for the menus.
    [[nodiscard]] std::vector<MenuEntry> menuEntriesOf(const Block &block) const;

    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void viewportChanged();
    void selectionOutlineChanged();
    void closeShortcutChanged();
    void marqueeChanged();
    void isGestureRunningChanged();
    void isHelpVisibleChanged();
    void isSearchVisibleChanged();
    /// A selected block lies elsewhere, or is drawn elsewhere.
    void selectionMoved();
    /// The keyboard is wanted by what floats over the selected blocks.
    void toolbarRequested();
    /// A note was begun by typing on the empty canvas; it is the one that is edited now.
    void typedAnywhere();
    /// The card turns back to the desktop: whatever waits for an answer closes.
    void turningAway();
    /// `block` is null when the menu is that of the canvas. Where on the canvas is the model's `rightClickCursorPos`.
    void contextMenuRequested(QPointF screenPoint, tallowby::Block *block);

protected:
    bool event(QEvent *event) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;
    void touchEvent(QTouchEvent *event) override;
    void touchUngrabEvent() override;
    void hoverMoveEvent(QHoverEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    struct Pinch {
        /// Of the two fingers.
        std::array<int, 2> ids;
        QPointF middle;
        double distance = 0;
    };

    [[nodiscard]] LiveSketchState &liveSketch() override { return m_liveSketch; }
    [[nodiscard]] double dragThreshold() const override;
    [[nodiscard]] bool isEditable(const Block &block) const override;
    [[nodiscard]] bool opensAtFirstClick(const Block &block) const override;
    [[nodiscard]] bool clickBody(const Block &block, const PointerInput &input) override;
    [[nodiscard]] std::optional<Qt::CursorShape> bodyCursor(const Block &block,
                                                            const PointerInput &input) const override;
    void panBy(QPointF screenDelta) override;
    void showDrag(const std::vector<BlockPtr> &blocks, QPointF dragOffset) override;
    void showMarquee(std::optional<QRectF> marquee) override;
    void edit(const BlockPtr &block, QPointF screenPoint) override;
    bool activate(const BlockPtr &block) override;
    void canvasClicked() override;

    void viewportMoved();
    void cull();
    [[nodiscard]] PointerInput inputAt(QPointF position, Qt::KeyboardModifiers modifiers, double pressure = 1) const;
    [[nodiscard]] PointerInput inputOf(const QPointerEvent &event);
    [[nodiscard]] PointerInput inputOf(const QEventPoint &point, Qt::KeyboardModifiers modifiers);
    void press(const PointerInput &input, bool isPan);
    void release(const PointerInput &input);
    void cancelGesture();
    void interruptGesture();
    void updateIsGestureRunning();
    void handleLostRelease(const QMouseEvent &event);
    void handleTurningAway();
    void handleFirstFinger(const QEventPoint &finger, Qt::KeyboardModifiers modifiers);
    void pinchBy(const QEventPoint &first, const QEventPoint &second);
    void awaitRest(QPointF screenPoint);
    void requestContextMenu(QPointF screenPoint);
    void updateCursor();
    void setIsBlankHeld(bool isHeld);
    void followCommandKey(const QKeyEvent &event, bool isHeld);
    bool zoomBy(const QNativeGestureEvent &gesture);

    [[nodiscard]] bool handleKey(const QKeyEvent &event);
    [[nodiscard]] bool handleStyleKey(const QKeyEvent &event);
    [[nodiscard]] bool handleCommandKey(const QKeyEvent &event);
    [[nodiscard]] bool handlePlainKey(const QKeyEvent &event);
    [[nodiscard]] bool forwardToEditor(const QKeyEvent &event);
    [[nodiscard]] QQuickItem *editorInput() const;
    [[nodiscard]] ImagePicker &imagePicker();
    [[nodiscard]] BlockContainerView *containerOf(const Block *block) const;
    /// Null for a block without a container, too.
    [[nodiscard]] BlockBody *bodyOf(const Block *block) const;
    void forEachBody(const std::function<void(BlockBody &)> &act) const;
    /// Of the bodies whose text has become large enough to be read. Whether any are left.
    bool makeSomeLegible();
    [[nodiscard]] QPointF pointerOnCanvas() const;
    [[nodiscard]] bool handleGestureKey(const QKeyEvent &event);
    [[nodiscard]] bool handleNamedKey(const QKeyEvent &event);
    void chooseTool(int digit);
    [[nodiscard]] bool walk(CanvasViewModel::ReadingDirection direction);
    void escape();
    void editSelected();
    void requestMenuOfSelection();
    void bringIntoView(const Block &block);
    void typeAnywhere(const QString &text);
    [[nodiscard]] QString takeLeadingKeys(const QString &next);
    [[nodiscard]] LeadingKeys::Effects keyEffects() const;
    /// False for a character that is no key of the canvas.
    [[nodiscard]] bool actOnCharacter(QChar character, const QKeyEvent &event);
    void nudge(double dx, double dy, Qt::KeyboardModifiers modifiers);

    Viewport m_viewport;
    /// At which the bodies were told how they are seen.
    double m_shownZoom = 1;
    ScheduledCall m_zoomSettling;
    ScheduledCall m_fingerResting;
    QPointF m_fingerStart;
    /// Of the finger that the tool follows.
    int m_fingerId = -1;
    CanvasViewModel *m_viewModel = nullptr;
    const BlockKindRegistry *m_blockKinds = nullptr;
    NotificationCenter *m_notifications = nullptr;
    NotificationCenter::Observation m_turn;
    std::array<std::unique_ptr<QQmlComponent>, kBlockTypeCount> m_bodyComponents;
    QHash<const Block *, BlockContainerView *> m_containers;
    ContainerRows m_containerRows{*this};
    FrameWork m_legibilityWork{*this, [this] { return makeSomeLegible(); }};
    QQmlComponent *m_selectionOutline = nullptr;
    QString m_closeShortcut;
    const MotionPreference *m_motionPreference = nullptr;
    std::unique_ptr<ImagePicker> m_imagePicker;

    LiveSketchState m_liveSketch;
    ToolBox m_tools{*this};
    std::optional<QRectF> m_marquee;
    std::vector<BlockPtr> m_draggedBlocks;
    QPointF m_dragOffset;
    /// Where the pointer was seen last.
    PointerInput m_pointer;
    Qt::MouseButton m_pressedButton = Qt::NoButton;
    std::optional<Pinch> m_pinch;
    bool m_isGestureRunning = false;
    bool m_isBlankHeld = false;
    /// A pen has been seen: a finger moves the paper while the pen draws on it.
    bool m_hasPen = false;
    /// While a pen is down, from 0 to 1.
    std::optional<double> m_penPressure;
    bool m_isHelpVisible = false;
    bool m_isSearchVisible = false;
    NoteColumn m_noteColumn;
    LeadingKeys m_leadingKeys;
    /// Owned as a child.
    CaretFollower *m_caretFollower;
    /// From the first word that an input method composes on the empty canvas, the keyboard focus stays here while that
    /// block is edited, and what comes goes on to the block's editor: a change of focus would cut the next word, which
    /// may have begun in the same instant.
    bool m_keepsInputMethod = false;
    std::optional<InputMethodHandover> m_inputMethod;
};

} // namespace tallowby
