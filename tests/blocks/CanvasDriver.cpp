#include "blocks/CanvasDriver.h"

#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QWheelEvent>

#include <qpa/qwindowsysteminterface.h>

namespace tallowby::test {

namespace {

/// Kept for the rest of the process: windows remember the devices that they have seen.
const QPointingDevice *registered(QPointingDevice *device) {
    QWindowSystemInterface::registerInputDevice(device);
    return device;
}

} // namespace

CanvasDriver::CanvasDriver() {
    view = makeCanvasView(engine, model, notifications);
    view->setParentItem(window.contentItem());
    window.resize(800, 600);
    view->setSize({800, 600});
    window.setPosition(0, 0);
    window.show();
    window.requestActivate();
    settle();
}

CanvasDriver::~CanvasDriver() = default;

BlockPtr CanvasDriver::add(BlockType type, const QRectF &frame, const QString &text) {
    auto block = std::make_shared<Block>(QUuid(), type, frame);
    block->setRawText(text);
    storage.insert(block);
    model.refreshBlocks();
    return block;
}

void CanvasDriver::pointAt(QPointF position) {
    QCursor::setPos(window.mapToGlobal(position.toPoint()));
}

void CanvasDriver::press(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString &text) {
    QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(&window, &down);
    QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
    QCoreApplication::sendEvent(&window, &up);
}

void CanvasDriver::type(const QString &text) {
    for (const QChar character : text) {
        press(Qt::Key(character.toUpper().unicode()), Qt::NoModifier, character);
    }
}

void CanvasDriver::hold(Qt::Key key, const QString &text) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(&window, &down);
}

void CanvasDriver::letGo(Qt::Key key) {
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &up);
}

void CanvasDriver::down(QPointF position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
    m_button = button;
    m_modifiers = modifiers;
    m_position = position;
    QMouseEvent event(QEvent::MouseButtonPress, position, position, button, button, modifiers);
    QCoreApplication::sendEvent(&window, &event);
}

void CanvasDriver::moveTo(QPointF position) {
    m_position = position;
    QMouseEvent event(QEvent::MouseMove, position, position, Qt::NoButton, m_button, m_modifiers);
    QCoreApplication::sendEvent(&window, &event);
}

void CanvasDriver::up() {
    QMouseEvent event(QEvent::MouseButtonRelease, m_position, m_position, m_button, Qt::NoButton, m_modifiers);
    QCoreApplication::sendEvent(&window, &event);
}

void CanvasDriver::click(QPointF position, Qt::KeyboardModifiers modifiers) {
    down(position, Qt::LeftButton, modifiers);
    up();
}

void CanvasDriver::drag(QPointF from, QPointF to, Qt::MouseButton button) {
    down(from, button);
    moveTo((from + to) / 2);
    moveTo(to);
    up();
}

void CanvasDriver::stroke(const std::vector<std::pair<QPointF, double>> &points) {
    static const auto *const kPen = registered(new QPointingDevice(
        QStringLiteral("pen"), 7, QInputDevice::DeviceType::Stylus, QPointingDevice::PointerType::Pen,
        QInputDevice::Capability::Position | QInputDevice::Capability::Pressure, 1, 1));
    // The window hears of the pen first; the mouse that stands in for it follows.
    const auto send = [this](QEvent::Type type, QPointF at, double pressure) {
        const bool isDown = type != QEvent::TabletRelease;
        QTabletEvent event(type, kPen, at, at, pressure, 0, 0, 0, 0, 0, Qt::NoModifier, Qt::LeftButton,
                           isDown ? Qt::LeftButton : Qt::NoButton);
        QCoreApplication::sendEvent(&window, &event);
    };
    send(QEvent::TabletPress, points.front().first, points.front().second);
    down(points.front().first);
    for (std::size_t i = 1; i < points.size(); ++i) {
        send(QEvent::TabletMove, points[i].first, points[i].second);
        moveTo(points[i].first);
    }
    send(QEvent::TabletRelease, points.back().first, 0);
    up();
}

void CanvasDriver::fingers(const std::vector<Finger> &fingers) {
    static const auto *const kScreen =
        registered(new QPointingDevice(QStringLiteral("screen"), 8, QInputDevice::DeviceType::TouchScreen,
                                       QPointingDevice::PointerType::Finger, QInputDevice::Capability::Position, 5, 0));
    QList<QWindowSystemInterface::TouchPoint> points;
    for (const Finger &finger : fingers) {
        QWindowSystemInterface::TouchPoint point;
        point.id = finger.id;
        point.area = QRectF(window.mapToGlobal(finger.position) - QPointF(1, 1), QSizeF(2, 2));
        point.state = finger.state;
        points << point;
    }
    QWindowSystemInterface::handleTouchEvent(&window, kScreen, points);
    settle();
    if (fingers.front().state != QEventPoint::State::Updated) {
        return;
    }
    // The window hands on where fingers are once a frame.
    bool isFramePainted = false;
    const auto connection =
        QObject::connect(&window, &QQuickWindow::afterRendering, &window, [&isFramePainted] { isFramePainted = true; });
    window.update();
    EXPECT_TRUE(waitUntil([&isFramePainted] { return isFramePainted; }));
    QObject::disconnect(connection);
}

void CanvasDriver::touch(const std::vector<std::vector<QPointF>> &steps, std::chrono::milliseconds rest) {
    const auto send = [this](const std::vector<QPointF> &positions, QEventPoint::State state) {
        std::vector<Finger> step;
        for (const QPointF &position : positions) {
            step.push_back({int(step.size()), position, state});
        }
        fingers(step);
    };
    send(steps.front(), QEventPoint::State::Pressed);
    for (std::size_t step = 1; step < steps.size(); ++step) {
        send(steps[step], QEventPoint::State::Updated);
    }
    scheduler.advance(rest);
    settle();
    send(steps.back(), QEventPoint::State::Released);
}

void CanvasDriver::drop(QPointF position, const QList<QUrl> &files) {
    QMimeData content;
    content.setUrls(files);
    QDragEnterEvent enter(position.toPoint(), Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &enter);
    QDropEvent event(position, Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &event);
}

void CanvasDriver::wheel(QPointF position, QPoint angle, Qt::KeyboardModifiers modifiers) {
    QWheelEvent turn(position, position, {}, angle, Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&window, &turn);
}

void CanvasDriver::pinch(QPointF position, double magnification) {
    QNativeGestureEvent gesture(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2, position, position,
                                position, magnification, {});
    QCoreApplication::sendEvent(&window, &gesture);
}

void CanvasDriver::compose(const QString &preedit, const QString &commit) {
    QInputMethodEvent event(preedit, {});
    event.setCommitString(commit);
    QCoreApplication::sendEvent(window.focusObject(), &event);
}

void CanvasDriver::settle() {
    for (int turn = 0; turn < 3; ++turn) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

bool CanvasDriver::isEditorFocused() const {
    return focus() && focus()->property("cursorPosition").isValid();
}

QString CanvasDriver::editorText() const {
    return focus()->property("text").toString();
}

std::map<const Block *, BlockContainerView *> CanvasDriver::containers() const {
    std::map<const Block *, BlockContainerView *> found;
    for (const QQuickItem *layer : view->childItems()) {
        for (QQuickItem *child : layer->childItems()) {
            if (auto *container = qobject_cast<BlockContainerView *>(child)) {
                found.emplace(container->block(), container);
            }
        }
    }
    return found;
}

QStringList CanvasDriver::texts() const {
    QStringList result;
    for (const BlockPtr &block : model.blocks()) {
        result << block->rawTextOrEmpty();
    }
    return result;
}

} // namespace tallowby::test
