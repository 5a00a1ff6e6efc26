#include "blocks/CanvasDriver.h"

#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QWheelEvent>

namespace tallowby::test {

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

void CanvasDriver::click(QPointF position, Qt::KeyboardModifiers modifiers) {
    QMouseEvent down(QEvent::MouseButtonPress, position, position, Qt::LeftButton, Qt::LeftButton, modifiers);
    QCoreApplication::sendEvent(&window, &down);
    QMouseEvent up(QEvent::MouseButtonRelease, position, position, Qt::LeftButton, Qt::NoButton, modifiers);
    QCoreApplication::sendEvent(&window, &up);
}

void CanvasDriver::drag(QPointF from, QPointF to, Qt::MouseButton button) {
    QMouseEvent down(QEvent::MouseButtonPress, from, from, button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &down);
    for (const double way : {0.5, 1.0}) {
        const QPointF at = from + way * (to - from);
        QMouseEvent move(QEvent::MouseMove, at, at, Qt::NoButton, button, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &move);
    }
    QMouseEvent up(QEvent::MouseButtonRelease, to, to, button, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &up);
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
