#include "model/ChecklistItem.h"

namespace tallowby {

void ChecklistItem::setText(const QString &text) {
    if (m_text != text) {
        m_text = text;
        Q_EMIT textChanged();
    }
}

void ChecklistItem::setIsDone(bool isDone) {
    if (m_isDone != isDone) {
        m_isDone = isDone;
        Q_EMIT isDoneChanged();
    }
}

} // namespace tallowby
