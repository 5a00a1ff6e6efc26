#include "canvas/InfiniteCanvasView.h"

#include "canvas/BlockContainerView.h"
#include "canvas/CanvasKeys.h"
#include "platform/VirtualKey.h"

#include <QCursor>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>

namespace tallowby {

namespace {

/// In canvas points.
constexpr double kNudge = 2;
constexpr double kLargeNudge = 20;
/// Where an input method puts its window while nothing is edited: beside the pointer, at the height of a line.
constexpr QSizeF kPointerCaret{1, 20};

} // namespace

void InfiniteCanvasView::keyPressEvent(QKeyEvent *event) {
    event->setAccepted(handleKey(*event));
}

bool InfiniteCanvasView::handleKey(const QKeyEvent &event) {
    if (m_viewModel->isAnyBlockEditing()) {
        return forwardToEditor(event);
    }
    return isCommandHeld(event.modifiers()) ? handleCommandKey(event) : handlePlainKey(event);
}

/// Keys that arrive here while the editor has not taken the focus yet are the editor's; a key that comes up from the
/// editor itself is nobody's.
bool InfiniteCanvasView::forwardToEditor(const QKeyEvent &event) {
    QQuickItem *input = editorInput();
    if (!input || input->hasActiveFocus()) {
        return false;
    }
    const std::unique_ptr<QKeyEvent> copy(event.clone());
    QCoreApplication::sendEvent(input, copy.get());
    return copy->isAccepted();
}

bool InfiniteCanvasView::handleCommandKey(const QKeyEvent &event) {
    if (isShortcutKey(event, Qt::Key_A)) {
        m_viewModel->selectAll();
    } else if (isShortcutKey(event, Qt::Key_Equal) || isShortcutKey(event, Qt::Key_Plus)) {
        zoomIn();
    } else if (isShortcutKey(event, Qt::Key_Minus)) {
        zoomOut();
    } else if (isShortcutKey(event, Qt::Key_0)) {
        resetZoom();
    } else {
        return false;
    }
    return true;
}

bool InfiniteCanvasView::handlePlainKey(const QKeyEvent &event) {
    switch (virtualKeyOf(event).value_or(keycode::kSpace)) {
    case keycode::kEscape:
        m_viewModel->deselectAll();
        return true;
    case keycode::kDelete:
    case keycode::kForwardDelete:
        m_viewModel->deleteSelected();
        return true;
    case keycode::kReturn: {
        const auto &selected = m_viewModel->selectedBlocks();
        if (!selected.empty() && m_blockKinds->kind(selected.back()->blockType()).isEditable) {
            edit(BlockPtr(selected.back()));
        }
        return true;
    }
    case keycode::kLeftArrow:
        nudge(-1, 0, event.modifiers());
        return true;
    case keycode::kRightArrow:
        nudge(1, 0, event.modifiers());
        return true;
    case keycode::kUpArrow:
        nudge(0, -1, event.modifiers());
        return true;
    case keycode::kDownArrow:
        nudge(0, 1, event.modifiers());
        return true;
    default:
        break;
    }
    const QString text = typedText(event);
    if (text.isEmpty()) {
        return false;
    }
    typeAnywhere(text);
    return true;
}

void InfiniteCanvasView::edit(const BlockPtr &block) {
    const QRectF frame(block->xPosition(), block->yPosition(), block->width(), block->height());
    if (!m_viewport.visibleRect().intersects(frame)) {
        m_viewport.pan(m_viewport.center() - m_viewport.toScreen(frame.center()));
        viewportMoved();
    }
    m_viewModel->beginEditing(block);
}

void InfiniteCanvasView::nudge(double dx, double dy, Qt::KeyboardModifiers modifiers) {
    const double step = modifiers.testFlag(Qt::ShiftModifier) ? kLargeNudge : kNudge;
    m_viewModel->moveSelectedBlocks(step * dx, step * dy);
}

QPointF InfiniteCanvasView::pointerOnCanvas() const {
    const QPointF pointer = mapFromGlobal(QCursor::pos());
    return m_viewport.toCanvas(contains(pointer) ? pointer : m_viewport.center());
}

void InfiniteCanvasView::typeAnywhere(const QString &text) {
    m_viewModel->spawnBlock(pointerOnCanvas(), BlockType::text, text);
}

void InfiniteCanvasView::editorOpened() {
    QQuickItem *input = editorInput();
    if (input && !m_keepsInputMethod) {
        input->forceActiveFocus();
    }
}

QQuickItem *InfiniteCanvasView::editorInput() const {
    const BlockContainerView *container = containerOf(m_viewModel->focusedBlock().get());
    return container && container->body() ? container->body()->inputItem() : nullptr;
}

void InfiniteCanvasView::inputMethodEvent(QInputMethodEvent *event) {
    m_hasPreedit = !event->preeditString().isEmpty();
    if (!m_viewModel->isAnyBlockEditing()) {
        if (!m_hasPreedit && printable(event->commitString()).isEmpty()) {
            return;
        }
        m_keepsInputMethod = true;
        typeAnywhere({});
    }
    if (QQuickItem *input = editorInput()) {
        QCoreApplication::sendEvent(input, event);
        updateInputMethod(Qt::ImQueryInput);
    }
    if (m_keepsInputMethod && !m_hasPreedit) {
        // Not before the input method has returned from this event: on a change of focus it commits what it holds to be
        // uncommitted still.
        QMetaObject::invokeMethod(this, &InfiniteCanvasView::handOverInputMethod, Qt::QueuedConnection);
    }
}

void InfiniteCanvasView::handOverInputMethod() {
    if (m_hasPreedit) {
        return;
    }
    m_keepsInputMethod = false;
    if (QQuickItem *input = editorInput()) {
        input->forceActiveFocus();
    }
}

QVariant InfiniteCanvasView::inputMethodQuery(Qt::InputMethodQuery query) const {
    if (query == Qt::ImEnabled) {
        return true;
    }
    QQuickItem *input = editorInput();
    if (!input) {
        return query == Qt::ImCursorRectangle ? QVariant(QRectF(mapFromGlobal(QCursor::pos()), kPointerCaret))
                                              : QQuickItem::inputMethodQuery(query);
    }
    const QVariant answer = input->inputMethodQuery(query);
    return answer.typeId() == QMetaType::QRectF ? QVariant(mapRectFromItem(input, answer.toRectF())) : answer;
}

} // namespace tallowby
