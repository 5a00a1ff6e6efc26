#include "blocks/text/FieldEditor.h"

namespace tallowby {

void FieldEditor::setIsRightAligned(bool isRightAligned) {
    if (m_isRightAligned != isRightAligned) {
        m_isRightAligned = isRightAligned;
        Q_EMIT isRightAlignedChanged();
    }
}

void FieldEditor::setFieldName(const QString &name) {
    if (m_fieldName != name) {
        m_fieldName = name;
        Q_EMIT fieldNameChanged();
    }
}

bool FieldEditor::handleKey(const QKeyEvent &event) {
    return (preedit().isEmpty() && m_keyHandler && m_keyHandler(event)) || AutoExpandingTextEditor::handleKey(event);
}

} // namespace tallowby
