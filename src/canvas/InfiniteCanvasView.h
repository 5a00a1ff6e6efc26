#pragma once

#include "canvas/BlockKindRegistry.h"
#include "canvas/CanvasViewModel.h"
#include "canvas/Viewport.h"

#include <QHash>
#include <QQmlComponent>
#include <QQuickItem>

#include <array>
#include <memory>

class QNativeGestureEvent;

namespace tallowby {

class BlockContainerView;
class NotificationCenter;

/// The canvas surface: owns the viewport and turns keys, input methods, pointer and wheel into operations of the model.
/// The QML file that is made on it composes the looks. It is a focus scope; whoever shows it gives it focus.
class InfiniteCanvasView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::CanvasViewModel *viewModel READ viewModelPointer CONSTANT)
    /// Screen points per canvas point.
    Q_PROPERTY(qreal zoom READ zoom NOTIFY viewportChanged)
    /// Where the canvas origin is drawn, on a whole device pixel.
    Q_PROPERTY(QPointF origin READ origin NOTIFY viewportChanged)
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

    [[nodiscard]] CanvasViewModel &viewModel() const { return *m_viewModel; }
    [[nodiscard]] CanvasViewModel *viewModelPointer() const { return m_viewModel; }
    [[nodiscard]] const BlockKindRegistry &blockKinds() const { return *m_blockKinds; }
    [[nodiscard]] const Viewport &viewport() const { return m_viewport; }
    [[nodiscard]] qreal zoom() const { return m_viewport.scale(); }
    [[nodiscard]] QPointF origin() const;
    [[nodiscard]] QQmlComponent *selectionOutline() const { return m_selectionOutline; }
    void setSelectionOutline(QQmlComponent *component);
    [[nodiscard]] const QString &closeShortcut() const { return m_closeShortcut; }
    void setCloseShortcut(const QString &text);

    Q_INVOKABLE void zoomIn();
    Q_INVOKABLE void zoomOut();
    Q_INVOKABLE void resetZoom();
    /// Asks for the way back to the desktop.
    Q_INVOKABLE void requestClose();

    /// For the containers: the body of each kind, compiled once; whether they are there; that a body has opened.
    [[nodiscard]] QQmlComponent &bodyComponent(BlockType type);
    void rememberContainer(BlockContainerView &container);
    void forgetContainer(BlockContainerView &container);
    void editorOpened();

    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

Q_SIGNALS:
    void viewportChanged();
    void selectionOutlineChanged();
    void closeShortcutChanged();

protected:
    bool event(QEvent *event) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;
    void hoverMoveEvent(QHoverEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    struct PointerGesture {
        Qt::MouseButton button = Qt::NoButton;
        QPointF start;
        QPointF last;
        /// What lay under the pointer at the press; null for empty canvas and for the middle button.
        BlockPtr block;
        bool isDrag = false;
    };

    void viewportMoved();
    void updateCursor(QPointF position);
    void click(const PointerGesture &gesture, Qt::KeyboardModifiers modifiers);
    bool zoomBy(const QNativeGestureEvent &gesture);

    [[nodiscard]] bool handleKey(const QKeyEvent &event);
    [[nodiscard]] bool handleCommandKey(const QKeyEvent &event);
    [[nodiscard]] bool handlePlainKey(const QKeyEvent &event);
    [[nodiscard]] bool forwardToEditor(const QKeyEvent &event);
    [[nodiscard]] QQuickItem *editorInput() const;
    [[nodiscard]] BlockContainerView *containerOf(const Block *block) const;
    [[nodiscard]] QPointF pointerOnCanvas() const;
    /// Brings the block into view first.
    void edit(const BlockPtr &block);
    void typeAnywhere(const QString &text);
    void nudge(double dx, double dy, Qt::KeyboardModifiers modifiers);
    void handOverInputMethod();

    Viewport m_viewport;
    /// At which the bodies were told how they are seen.
    double m_shownZoom = 1;
    CanvasViewModel *m_viewModel = nullptr;
    const BlockKindRegistry *m_blockKinds = nullptr;
    NotificationCenter *m_notifications = nullptr;
    std::array<std::unique_ptr<QQmlComponent>, kBlockTypeCount> m_bodyComponents;
    QHash<const Block *, BlockContainerView *> m_containers;
    QQmlComponent *m_selectionOutline = nullptr;
    QString m_closeShortcut;
    PointerGesture m_gesture;
    /// While an input method composes the first word of a block, the keyboard focus stays here and what it sends goes
    /// on to the block's editor: a change of focus would make it give up the composition.
    bool m_keepsInputMethod = false;
    bool m_hasPreedit = false;
};

} // namespace tallowby
