#include "canvas/view/InfiniteCanvasView.h"

#include "canvas/container/BlockContainerView.h"
#include "canvas/view/CanvasKeys.h"
#include "canvas/view/ImagePicker.h"

#include <QCursor>
#include <QGuiApplication>
#include <QLineF>
#include <QMimeData>
#include <QNativeGestureEvent>
#include <QStyleHints>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowby {

namespace {

/// Wheel angles come in eighths of a degree; a notch of an ordinary wheel is 15 degrees.
constexpr double kAngleUnitsPerDegree = 8;
constexpr double kScrollPointsPerDegree = 4;
/// Zoom per point of vertical scrolling.
constexpr double kZoomPerScrollPoint = 0.01;
/// Fingers closer than this, in points, say nothing about a zoom.
constexpr double kClosestFingers = 10;
/// As long as on other touch screens.
constexpr std::chrono::milliseconds kFingerRest{500};

/// Touchpads report points; wheels report angles, of which a degree counts as a point when zooming.
QPointF scrollDelta(const QWheelEvent &event, double pointsPerDegree) {
    return event.pixelDelta().isNull() ? QPointF(event.angleDelta()) / kAngleUnitsPerDegree * pointsPerDegree
                                       : QPointF(event.pixelDelta());
}

} // namespace

double InfiniteCanvasView::dragThreshold() const {
    return QGuiApplication::styleHints()->startDragDistance();
}

PointerInput InfiniteCanvasView::inputAt(QPointF position, Qt::KeyboardModifiers modifiers, double pressure) const {
    return {position, m_viewport.toCanvas(position), modifiers, pressure};
}

PointerInput InfiniteCanvasView::inputOf(const QPointerEvent &event) {
    return inputOf(event.points().first(), event.modifiers());
}

PointerInput InfiniteCanvasView::inputOf(const QEventPoint &point, Qt::KeyboardModifiers modifiers) {
    m_pointer = inputAt(point.position(), modifiers, m_penPressure.value_or(1));
    return m_pointer;
}

/// What a pen does comes to items as events of the mouse; how hard it presses only to the window. A press anywhere in
/// the window may move the caret or take the text away before its items know that something is being composed.
bool InfiniteCanvasView::eventFilter(QObject *watched, QEvent *event) {
    const bool isPress = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::TouchBegin ||
                         event->type() == QEvent::TabletPress;
    if (isPress && m_inputMethod) {
        finishComposing();
    }
    if (event->type() == QEvent::TabletRelease) {
        m_penPressure.reset();
    } else if (event->type() == QEvent::TabletPress || event->type() == QEvent::TabletMove) {
        const auto &pen = *static_cast<QTabletEvent *>(event);
        m_hasPen = true;
        m_penPressure = pen.buttons() ? std::optional(std::clamp(pen.pressure(), 0.0, 1.0)) : std::nullopt;
    }
    return QQuickItem::eventFilter(watched, event);
}

void InfiniteCanvasView::press(const PointerInput &input, bool isPan) {
    if (isPan) {
        m_tools.pressToPan(input);
    } else {
        m_tools.press(input);
    }
    updateIsGestureRunning();
}

void InfiniteCanvasView::release(const PointerInput &input) {
    m_tools.release(input);
    updateIsGestureRunning();
}

void InfiniteCanvasView::cancelGesture() {
    m_tools.cancel();
    updateIsGestureRunning();
}

void InfiniteCanvasView::interruptGesture() {
    m_tools.interrupt();
    updateIsGestureRunning();
}

/// The release of the button may never come: it goes to whatever has the pointer by then.
void InfiniteCanvasView::handleTurningAway() {
    m_pressedButton = Qt::NoButton;
    m_fingerResting.cancel();
    m_pinch.reset();
    interruptGesture();
    ungrabMouse();
    ungrabTouchPoints();
    setIsBlankHeld(false);
    setIsHelpVisible(false);
    Q_EMIT turningAway();
}

void InfiniteCanvasView::updateIsGestureRunning() {
    if (std::exchange(m_isGestureRunning, m_tools.isPressed()) != m_tools.isPressed()) {
        Q_EMIT isGestureRunningChanged();
    }
    updateCursor();
}

void InfiniteCanvasView::mousePressEvent(QMouseEvent *event) {
    forceActiveFocus(Qt::MouseFocusReason);
    const PointerInput input = inputOf(*event);
    handleLostRelease(*event);
    if (m_pressedButton != Qt::NoButton) {
        // The first button's gesture goes on.
        return;
    }
    m_pressedButton = event->button();
    if (m_pressedButton != Qt::RightButton) {
        press(input, m_pressedButton == Qt::MiddleButton || m_isBlankHeld);
    }
}

void InfiniteCanvasView::mouseMoveEvent(QMouseEvent *event) {
    handleLostRelease(*event);
    m_tools.move(inputOf(*event));
    updateCursor();
}

/// The pointer is back, and the button that began the gesture is not down any more, or goes down again.
void InfiniteCanvasView::handleLostRelease(const QMouseEvent &event) {
    const bool isHeld = event.buttons().testFlag(m_pressedButton) && event.button() != m_pressedButton;
    if (m_pressedButton != Qt::NoButton && !isHeld) {
        m_pressedButton = Qt::NoButton;
        interruptGesture();
    }
}

void InfiniteCanvasView::mouseReleaseEvent(QMouseEvent *event) {
    const PointerInput input = inputOf(*event);
    if (event->button() != m_pressedButton) {
        return;
    }
    m_pressedButton = Qt::NoButton;
    if (event->button() == Qt::RightButton) {
        requestContextMenu(input.screen);
    } else {
        release(input);
    }
}

void InfiniteCanvasView::mouseUngrabEvent() {
    m_pressedButton = Qt::NoButton;
    interruptGesture();
}

void InfiniteCanvasView::touchEvent(QTouchEvent *event) {
    if (event->type() == QEvent::TouchCancel) {
        touchUngrabEvent();
        return;
    }
    QList<QEventPoint> down = event->points();
    down.removeIf([](const QEventPoint &point) { return point.state() == QEventPoint::State::Released; });
    if (down.size() != 1 || QLineF(m_fingerStart, down.front().position()).length() > dragThreshold()) {
        m_fingerResting.cancel();
    }
    if (down.size() > 1) {
        interruptGesture();
        pinchBy(down.at(0), down.at(1));
        return;
    }
    const bool wasPinching = std::exchange(m_pinch, std::nullopt).has_value();
    if (down.isEmpty()) {
        release(inputOf(*event));
    } else if (wasPinching) {
        // The finger that stays moves the paper on.
        m_fingerId = down.front().id();
        press(inputOf(down.front(), event->modifiers()), true);
    } else if (event->type() == QEvent::TouchBegin || down.front().id() != m_fingerId) {
        handleFirstFinger(down.front(), event->modifiers());
    } else {
        m_tools.move(inputOf(down.front(), event->modifiers()));
    }
}

void InfiniteCanvasView::handleFirstFinger(const QEventPoint &finger, Qt::KeyboardModifiers modifiers) {
    interruptGesture();
    forceActiveFocus(Qt::MouseFocusReason);
    m_fingerId = finger.id();
    const bool isSelecting = m_viewModel->activeTool().kind() == CanvasTool::Kind::select;
    press(inputOf(finger, modifiers), m_hasPen && !isSelecting);
    if (isSelecting) {
        awaitRest(finger.position());
    }
}

/// A finger has no second button: one that rests asks for the menu.
void InfiniteCanvasView::awaitRest(QPointF screenPoint) {
    m_fingerStart = screenPoint;
    m_fingerResting = m_viewModel->scheduler().after(kFingerRest, [this, screenPoint] {
        cancelGesture();
        requestContextMenu(screenPoint);
    });
}

void InfiniteCanvasView::touchUngrabEvent() {
    m_fingerResting.cancel();
    m_pinch.reset();
    cancelGesture();
}

/// Moves and zooms so that what lies under the two fingers stays under them. Other fingers than before begin anew.
void InfiniteCanvasView::pinchBy(const QEventPoint &first, const QEventPoint &second) {
    const QLineF fingers(first.position(), second.position());
    const Pinch pinch{{first.id(), second.id()}, fingers.center(), fingers.length()};
    const std::optional<Pinch> before = std::exchange(m_pinch, pinch);
    if (!before || before->ids != pinch.ids) {
        return;
    }
    panBy(pinch.middle - before->middle);
    const bool saysZoom = std::min(pinch.distance, before->distance) > kClosestFingers;
    if (saysZoom && m_viewport.zoomAroundScreenPoint(pinch.middle, pinch.distance / before->distance)) {
        viewportMoved();
    }
}

void InfiniteCanvasView::requestContextMenu(QPointF screenPoint) {
    m_viewModel->endEditing();
    const QPointF place = m_viewport.toCanvas(screenPoint);
    const BlockPtr block = m_viewModel->blockAt(place);
    if (block && !block->isSelected()) {
        m_viewModel->selectOnly(block);
    }
    m_viewModel->setRightClickCursorPos(place);
    Q_EMIT contextMenuRequested(screenPoint, block.get());
}

void InfiniteCanvasView::hoverMoveEvent(QHoverEvent *event) {
    static_cast<void>(inputOf(*event));
    updateCursor();
}

void InfiniteCanvasView::updateCursor() {
    const bool isHandOut = m_isBlankHeld && !m_tools.isPressed();
    const Qt::CursorShape shape = isHandOut ? m_tools.handCursor(m_pointer) : m_tools.cursor(m_pointer);
    if (cursor().shape() != shape) {
        setCursor(QCursor(shape));
    }
}

void InfiniteCanvasView::setIsBlankHeld(bool isHeld) {
    if (m_isBlankHeld != isHeld) {
        m_isBlankHeld = isHeld;
        updateCursor();
    }
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
        panBy(isTurned ? delta.transposed() : delta);
    }
    // What is being dragged stays under the pointer, though the paper has moved.
    m_pointer = inputAt(event->position(), event->modifiers(), m_pointer.pressure);
    m_tools.move(m_pointer);
    updateCursor();
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

void InfiniteCanvasView::dragEnterEvent(QDragEnterEvent *event) {
    event->setAccepted(event->mimeData()->hasUrls());
}

void InfiniteCanvasView::dragMoveEvent(QDragMoveEvent *event) {
    event->setAccepted(event->mimeData()->hasUrls());
}

void InfiniteCanvasView::dropEvent(QDropEvent *event) {
    const QPointF place = m_viewport.toCanvas(event->position());
    const QList<QUrl> files = event->mimeData()->urls();
    const BlockPtr block = m_viewModel->blockAt(place);
    BlockBody *body = bodyOf(block.get());
    if (!body || !body->dropFiles(files)) {
        m_viewModel->insertFiles(files, place);
    }
    event->acceptProposedAction();
}

} // namespace tallowby
