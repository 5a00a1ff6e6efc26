#include "canvas/container/BlockContainerView.h"
#include "canvas/view/CanvasKeys.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "canvas/view/typing/CaretFollower.h"

#include <QCursor>
#include <QInputMethodEvent>
#include <QQuickWindow>

namespace tallowby {

namespace {

/// Where an input method puts its window while nothing is edited: beside the pointer, at the height of a line.
constexpr QSizeF kPointerCaret{1, 20};

} // namespace

QQuickItem *InfiniteCanvasView::editorInput() const {
    const BlockBody *body = bodyOf(m_viewModel->focusedBlock().get());
    return body ? body->inputItem() : nullptr;
}

void InfiniteCanvasView::editorOpened() {
    QQuickItem *input = editorInput();
    if (input) {
        m_caretFollower->setInput(input);
    }
    if (input && m_keepsInputMethod) {
        // An editor shows its caret by itself only when it has the focus.
        input->setProperty("cursorVisible", true);
    } else if (input) {
        input->forceActiveFocus();
    }
}

void InfiniteCanvasView::finishComposing() {
    m_inputMethod->finish(editorInput());
    // The search has a text of its own.
    m_inputMethod->finish(window() ? window()->activeFocusItem() : nullptr);
}

void InfiniteCanvasView::inputMethodEvent(QInputMethodEvent *event) {
    const QString &preedit = event->preeditString();
    if (!m_viewModel->isAnyBlockEditing()) {
        const QString committed = printable(event->commitString());
        if (m_tools.isPressed()) {
            // As the keys: what they would do, they would do to what is being moved.
            if (!preedit.isEmpty()) {
                m_inputMethod->discard(preedit);
            }
            return;
        }
        if (preedit.isEmpty() && committed.trimmed().isEmpty()) {
            // A blank turns the pointer into a hand, also one that is as wide as a letter.
            setIsBlankHeld(!committed.isEmpty());
            return;
        }
        setIsBlankHeld(false);
        m_keepsInputMethod = true;
        typeAnywhere({});
    }
    if (QQuickItem *input = editorInput()) {
        QCoreApplication::sendEvent(input, event);
        updateInputMethod(Qt::ImQueryInput);
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
