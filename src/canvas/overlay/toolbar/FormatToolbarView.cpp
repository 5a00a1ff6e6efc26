#include "canvas/overlay/toolbar/FormatToolbarView.h"

#include "canvas/container/HandleLayout.h"
#include "canvas/model/BlockGeometry.h"
#include "canvas/overlay/toolbar/ToolbarPlacement.h"
#include "canvas/view/CanvasKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <algorithm>
#include <utility>

namespace tallowby {

FormatToolbarView::FormatToolbarView(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemIsFocusScope);
}

FormatToolbarView::~FormatToolbarView() = default;

void FormatToolbarView::setCanvas(InfiniteCanvasView *canvas) {
    if (m_canvas != canvas) {
        m_canvas = canvas;
        Q_EMIT canvasChanged();
    }
}

void FormatToolbarView::setIsHeldBack(bool isHeldBack) {
    if (m_isHeldBack != isHeldBack) {
        m_isHeldBack = isHeldBack;
        polish();
        Q_EMIT isHeldBackChanged();
    }
}

void FormatToolbarView::componentComplete() {
    QQuickItem::componentComplete();
    const CanvasViewModel &model = m_canvas->viewModel();
    // However many of these come in one turn of the event loop, it is worked out once.
    connect(&model, &CanvasViewModel::selectionChanged, this, [this] {
        m_target = {};
        polish();
    });
    connect(&model, &CanvasViewModel::framesChanged, this, &FormatToolbarView::follow);
    connect(&model, &CanvasViewModel::activeToolChanged, this, &FormatToolbarView::follow);
    connect(&model, &CanvasViewModel::focusedBlockIdChanged, this, &FormatToolbarView::follow);
    connect(m_canvas, &InfiniteCanvasView::viewportChanged, this, &FormatToolbarView::follow);
    connect(m_canvas, &InfiniteCanvasView::selectionMoved, this, &FormatToolbarView::follow);
    connect(m_canvas, &InfiniteCanvasView::isGestureRunningChanged, this, &FormatToolbarView::follow);
    connect(m_canvas, &InfiniteCanvasView::isHelpVisibleChanged, this, &FormatToolbarView::follow);
    connect(m_canvas, &InfiniteCanvasView::toolbarRequested, this, &FormatToolbarView::takeKeyboard);
    polish();
}

/// Nothing for every frame of a pan over an unselected canvas.
void FormatToolbarView::follow() {
    if (m_toolbar) {
        polish();
    }
}

QUrl FormatToolbarView::wantedFile() const {
    const auto &selected = m_canvas->viewModel().selectedBlocks();
    if (selected.empty()) {
        return {};
    }
    const BlockKindRegistry &kinds = m_canvas->blockKinds();
    const QUrl first = kinds.kind(selected.front()->blockType()).toolbar;
    const auto isSame = [&](const BlockPtr &block) { return kinds.kind(block->blockType()).toolbar == first; };
    if (std::ranges::all_of(selected, isSame)) {
        return first;
    }
    const auto hasColor = [&](const BlockPtr &block) { return kinds.kind(block->blockType()).color != nullptr; };
    return std::ranges::all_of(selected, hasColor) ? kinds.colorToolbar() : QUrl();
}

void FormatToolbarView::updatePolish() {
    if (const QUrl file = wantedFile(); m_file != file) {
        m_file = file;
        if (m_toolbar) {
            setIsShown(false);
            m_toolbar->setVisible(false);
            m_toolbar->deleteLater();
            m_toolbar = nullptr;
        }
        if (!file.isEmpty()) {
            makeToolbar();
        }
    }
    if (m_toolbar) {
        m_toolbar->setBlocks(m_canvas->viewModel().selectedBlocks());
        place();
    }
}

void FormatToolbarView::makeToolbar() {
    QQmlComponent component(qmlEngine(this), m_file);
    QObject *object = component.beginCreate(qmlContext(m_canvas));
    m_toolbar = qobject_cast<BlockToolbar *>(object);
    if (!m_toolbar) {
        qFatal("A toolbar could not be made: %s", qUtf8Printable(component.errorString()));
    }
    QQmlEngine::setObjectOwnership(m_toolbar, QQmlEngine::CppOwnership);
    m_toolbar->setParent(this);
    m_toolbar->attach(m_canvas->viewModel(), m_canvas->blockKinds());
    m_toolbar->setBlocks(m_canvas->viewModel().selectedBlocks());
    m_toolbar->setParentItem(this);
    component.completeCreate();
    connect(m_toolbar, &QQuickItem::implicitWidthChanged, this, &FormatToolbarView::follow);
}

/// The selected blocks with their outlines and handles, on screen.
QRectF FormatToolbarView::target() const {
    const auto &selected = m_canvas->viewModel().selectedBlocks();
    QRectF bounds;
    for (const BlockPtr &block : selected) {
        bounds |= boundsOf(*block);
    }
    const Viewport &viewport = m_canvas->viewport();
    const double outline = HandleLayout::kOutlineGap * (selected.size() > 1 ? 2 : 1);
    QRectF target = QRectF(viewport.toScreen(bounds.topLeft()), bounds.size() * viewport.scale())
                        .adjusted(-outline, -outline, outline, outline);
    if (const auto handles = m_canvas->handles()) {
        QRectF handle(0, 0, HandleLayout::kHandleSize, HandleLayout::kHandleSize);
        handle.moveCenter(handles->middleOf(RotationHandle{}));
        target |= handle;
    }
    return target;
}

void FormatToolbarView::place() {
    const CanvasViewModel &model = m_canvas->viewModel();
    const QRectF target = this->target();
    const bool isInTheWay = m_isHeldBack || m_canvas->isGestureRunning() || m_canvas->isHelpVisible();
    const bool isSelecting = model.activeTool().kind() == CanvasTool::Kind::select;
    if (isInTheWay || !isSelecting || !target.intersects(m_canvas->boundingRect())) {
        setIsShown(false);
        return;
    }
    std::vector<QRectF> obstacles;
    for (const QQuickItem *obstacle : std::as_const(m_obstacles)) {
        if (obstacle->isVisible()) {
            obstacles.push_back(obstacle->mapRectToItem(m_canvas, obstacle->boundingRect()));
        }
    }
    const QSizeF bar(m_toolbar->implicitWidth(), m_toolbar->implicitHeight());
    QPointF place = ToolbarPlacement::placed(bar, target, m_canvas->size(), obstacles);
    // A text that grows, while it is typed or step by step, does not pull the buttons from under the pointer.
    const bool isGrowing = m_isShown && !m_target.isEmpty() && m_target.left() == target.left();
    if (isGrowing && bar == size() && x() + bar.width() <= m_canvas->width()) {
        place.setX(x());
    }
    m_target = target;
    setPosition(place);
    setSize(bar);
    setIsShown(true);
}

void FormatToolbarView::setIsShown(bool isShown) {
    if (m_isShown == isShown) {
        return;
    }
    m_isShown = isShown;
    if (!isShown) {
        giveKeyboardBack();
    }
    Q_EMIT isShownChanged();
}

void FormatToolbarView::takeKeyboard() {
    QQuickItem *first = m_isShown ? m_toolbar->nextItemInFocusChain() : nullptr;
    if (first && isAncestorOf(first)) {
        first->forceActiveFocus(Qt::TabFocusReason);
    }
}

void FormatToolbarView::giveKeyboardBack() {
    const bool hadKeyboard = hasActiveFocus();
    setFocus(false);
    if (hadKeyboard) {
        m_canvas->forceActiveFocus(Qt::OtherFocusReason);
        m_canvas->editorOpened();
    }
}

void FormatToolbarView::keyPressEvent(QKeyEvent *event) {
    event->setAccepted(handleKey(*event));
}

/// Commands go on to the canvas. Nothing else does: an arrow would move the blocks, and a letter make a text.
bool FormatToolbarView::handleKey(const QKeyEvent &event) {
    switch (event.key()) {
    case Qt::Key_Escape:
    case Qt::Key_F6:
        giveKeyboardBack();
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        walk(event.key() == Qt::Key_Right);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        pressButton();
        return true;
    default:
        return !isCommandHeld(event.modifiers());
    }
}

/// Buttons know the space bar only.
void FormatToolbarView::pressButton() {
    const QPointer<QQuickItem> button = window()->activeFocusItem();
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent space(type, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
        if (button) {
            QCoreApplication::sendEvent(button, &space);
        }
    }
}

/// Round at the end.
void FormatToolbarView::walk(bool isForward) {
    QQuickItem *item = window()->activeFocusItem();
    QQuickItem *next = item->nextItemInFocusChain(isForward);
    if (next && isAncestorOf(next)) {
        next->forceActiveFocus(isForward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    } else if (isForward) {
        takeKeyboard();
    }
}

} // namespace tallowby
