#include "blocks/text/FieldsBody.h"

#include "blocks/text/FieldEditor.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "model/AnyCodable.h"

namespace tallowby {

void FieldsBody::componentComplete() {
    reload();
    EditedBody::componentComplete();
    layOut();
    connect(block(), &Block::contentChanged, this, [this] {
        if (!m_isWriting) {
            reload();
            layOut();
            if (editor()) {
                editor()->setText(editedText());
            }
        }
    });
}

void FieldsBody::setIsEditing(bool isEditing) {
    EditedBody::setIsEditing(isEditing);
    setAcceptedMouseButtons(isEditing ? Qt::LeftButton : Qt::NoButton);
}

void FieldsBody::editorOpened(AutoExpandingTextEditor &) {
    field()->setKeyHandler([this](const QKeyEvent &event) { return handleKey(event); });
}

FieldEditor *FieldsBody::field() const {
    return static_cast<FieldEditor *>(editor());
}

void FieldsBody::write(const QString &key, const AnyCodable &value) {
    m_isWriting = true;
    viewModel().setContentField(*block(), key, value);
    m_isWriting = false;
}

void FieldsBody::leaveField() {
    if (editor()) {
        canvas().finishComposing();
        editor()->forgetHistory();
    }
}

void FieldsBody::moveEditor(const std::function<void()> &leave, int caret) {
    canvas().finishComposing();
    leave();
    const QString text = editedText();
    editor()->setText(text);
    editor()->setCaret(caret < 0 ? int(text.size()) : caret);
}

bool FieldsBody::isCaretInLastLine(int step) const {
    const QRectF caret = inputItem()->property("cursorRectangle").toRectF();
    return step < 0 ? caret.top() < caret.height() / 2
                    : caret.bottom() > field()->usedSize().height() - caret.height() / 2;
}

bool FieldsBody::takesWheel(const QWheelEvent &event) const {
    return (isEditing() || block()->isSelected()) && isScrolling() && !event.modifiers().testFlag(Qt::ControlModifier);
}

void FieldsBody::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    EditedBody::geometryChange(newGeometry, oldGeometry);
    if (isComponentComplete()) {
        layOut();
    }
}

} // namespace tallowby
