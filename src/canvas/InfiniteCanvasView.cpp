#include "canvas/InfiniteCanvasView.h"

#include "canvas/BlockContainerView.h"
#include "canvas/CanvasKeys.h"
#include "platform/AppEvents.h"

#include <QCursor>
#include <QGuiApplication>
#include <QNativeGestureEvent>
#include <QQuickWindow>
#include <QStyleHints>

#include <cmath>

namespace tallowby {

namespace {

/// Wheel angles come in eighths of a degree; a notch of an ordinary wheel is 15 degrees.
constexpr double kAngleUnitsPerDegree = 8;
constexpr double kScrollPointsPerDegree = 4;
/// Zoom per point of vertical scrolling.
constexpr double kZoomPerScrollPoint = 0.01;

/// Touchpads report points; wheels report angles, of which a degree counts as a point when zooming.
QPointF scrollDelta(const QWheelEvent &event, double pointsPerDegree) {
    return event.pixelDelta().isNull() ? QPointF(event.angleDelta()) / kAngleUnitsPerDegree * pointsPerDegree
                                       : QPointF(event.pixelDelta());
}

} // namespace

InfiniteCanvasView::InfiniteCanvasView(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemIsFocusScope);
    setFlag(ItemAcceptsInputMethod);
    setAcceptedMouseButtons(Qt::LeftButton | Qt::MiddleButton);
    setAcceptHoverEvents(true);
    setFocus(true);
}

InfiniteCanvasView::~InfiniteCanvasView() {
    // Containers go with the children, after this object's own members.
    for (BlockContainerView *container : std::as_const(m_containers)) {
        container->setCanvas(nullptr);
    }
}

void InfiniteCanvasView::attach(CanvasViewModel &viewModel, const BlockKindRegistry &blockKinds,
                                NotificationCenter &notifications) {
    m_viewModel = &viewModel;
    m_blockKinds = &blockKinds;
    m_notifications = &notifications;
    connect(&viewModel, &CanvasViewModel::focusedBlockIdChanged, this, [this] {
        if (!m_viewModel->isAnyBlockEditing() && hasActiveFocus()) {
            forceActiveFocus();
        }
    });
    viewportMoved();
}

QPointF InfiniteCanvasView::origin() const {
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    const QPointF exact = m_viewport.origin() * ratio;
    return QPointF(std::round(exact.x()), std::round(exact.y())) / ratio;
}

void InfiniteCanvasView::setSelectionOutline(QQmlComponent *component) {
    if (m_selectionOutline != component) {
        m_selectionOutline = component;
        Q_EMIT selectionOutlineChanged();
    }
}

void InfiniteCanvasView::setCloseShortcut(const QString &text) {
    if (m_closeShortcut != text) {
        m_closeShortcut = text;
        Q_EMIT closeShortcutChanged();
    }
}

void InfiniteCanvasView::zoomIn() {
    if (m_viewport.setScale(m_viewport.scale() * Viewport::kZoomStep)) {
        viewportMoved();
    }
}

void InfiniteCanvasView::zoomOut() {
    if (m_viewport.setScale(m_viewport.scale() / Viewport::kZoomStep)) {
        viewportMoved();
    }
}

void InfiniteCanvasView::resetZoom() {
    if (m_viewport.setScale(1.0)) {
        viewportMoved();
    }
}

void InfiniteCanvasView::requestClose() {
    m_notifications->post(events::canvasCloseRequested);
}

void InfiniteCanvasView::viewportMoved() {
    if (m_viewport.needsCulling()) {
        m_viewModel->updateVisibleBlocks(m_viewport.visibleRect(), m_viewport.scale());
        m_viewport.noteCulled();
    }
    if (std::exchange(m_shownZoom, m_viewport.scale()) != m_viewport.scale()) {
        for (const BlockContainerView *container : std::as_const(m_containers)) {
            container->body()->setZoom(m_viewport.scale());
        }
    }
    Q_EMIT viewportChanged();
}

void InfiniteCanvasView::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (m_viewport.setSize(newGeometry.size())) {
        viewportMoved();
    }
}

void InfiniteCanvasView::itemChange(ItemChange change, const ItemChangeData &data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        Q_EMIT viewportChanged();
    }
}

QQmlComponent &InfiniteCanvasView::bodyComponent(BlockType type) {
    auto &component = m_bodyComponents.at(std::size_t(type));
    if (!component) {
        component = std::make_unique<QQmlComponent>(qmlEngine(this), m_blockKinds->kind(type).body);
    }
    return *component;
}

void InfiniteCanvasView::rememberContainer(BlockContainerView &container) {
    m_containers.insert(container.block(), &container);
}

void InfiniteCanvasView::forgetContainer(BlockContainerView &container) {
    // A block that came back into view may have a new container already.
    if (containerOf(container.block()) == &container) {
        m_containers.remove(container.block());
    }
}

BlockContainerView *InfiniteCanvasView::containerOf(const Block *block) const {
    return m_containers.value(block);
}

void InfiniteCanvasView::mousePressEvent(QMouseEvent *event) {
    forceActiveFocus(Qt::MouseFocusReason);
    const QPointF position = event->position();
    const bool mayHitBlock = event->button() == Qt::LeftButton;
    m_gesture = {.button = event->button(),
                 .start = position,
                 .last = position,
                 .block = mayHitBlock ? m_viewModel->blockAt(m_viewport.toCanvas(position)) : nullptr,
                 .isDrag = false};
}

void InfiniteCanvasView::mouseMoveEvent(QMouseEvent *event) {
    const QPointF position = event->position();
    const int threshold = QGuiApplication::styleHints()->startDragDistance();
    if (!m_gesture.isDrag && (position - m_gesture.start).manhattanLength() >= threshold) {
        m_gesture.isDrag = true;
        updateCursor(position);
    }
    if (m_gesture.isDrag && !m_gesture.block && m_viewport.pan(position - m_gesture.last)) {
        viewportMoved();
    }
    if (m_gesture.isDrag) {
        m_gesture.last = position;
    }
}

void InfiniteCanvasView::mouseReleaseEvent(QMouseEvent *event) {
    const PointerGesture gesture = std::exchange(m_gesture, {});
    if (gesture.button == Qt::LeftButton && !gesture.isDrag) {
        click(gesture, event->modifiers());
    }
    updateCursor(event->position());
}

void InfiniteCanvasView::mouseUngrabEvent() {
    m_gesture = {};
}

void InfiniteCanvasView::click(const PointerGesture &gesture, Qt::KeyboardModifiers modifiers) {
    if (!gesture.block) {
        m_viewModel->deselectAll();
        m_notifications->post(events::deselectAllBlocks);
    } else if (modifiers.testFlag(Qt::ShiftModifier)) {
        m_viewModel->endEditing();
        m_viewModel->toggleSelection(gesture.block);
    } else if (m_blockKinds->kind(gesture.block->blockType()).isEditable) {
        m_viewModel->beginEditing(gesture.block);
        if (const BlockContainerView *container = containerOf(gesture.block.get()); container->isEditing()) {
            container->body()->placeCaret(container->body()->mapFromItem(this, gesture.start));
        }
    } else {
        m_viewModel->endEditing();
        m_viewModel->selectOnly(gesture.block);
    }
}

void InfiniteCanvasView::hoverMoveEvent(QHoverEvent *event) {
    updateCursor(event->position());
}

void InfiniteCanvasView::updateCursor(QPointF position) {
    if (m_gesture.isDrag && !m_gesture.block) {
        setCursor(Qt::ClosedHandCursor);
        return;
    }
    const BlockPtr block = m_viewModel->blockAt(m_viewport.toCanvas(position));
    setCursor(block && m_blockKinds->kind(block->blockType()).isEditable ? Qt::IBeamCursor : Qt::ArrowCursor);
}

void InfiniteCanvasView::wheelEvent(QWheelEvent *event) {
    if (isCommandHeld(event->modifiers())) {
        const double points = scrollDelta(*event, 1.0).y();
        if (m_viewport.zoomAroundScreenPoint(event->position(), 1 + kZoomPerScrollPoint * points)) {
            viewportMoved();
        }
    } else {
        const QPointF delta = scrollDelta(*event, kScrollPointsPerDegree);
        const bool isTurned = event->modifiers().testFlag(Qt::ShiftModifier) && delta.x() == 0;
        if (m_viewport.pan(isTurned ? delta.transposed() : delta)) {
            viewportMoved();
        }
    }
}

bool InfiniteCanvasView::event(QEvent *event) {
    if (event->type() == QEvent::NativeGesture && zoomBy(*static_cast<QNativeGestureEvent *>(event))) {
        event->accept();
        return true;
    }
    return QQuickItem::event(event);
}

bool InfiniteCanvasView::zoomBy(const QNativeGestureEvent &gesture) {
    if (gesture.gestureType() != Qt::ZoomNativeGesture) {
        return false;
    }
    if (m_viewport.zoomAroundScreenPoint(gesture.position(), 1 + gesture.value())) {
        viewportMoved();
    }
    return true;
}

} // namespace tallowby
