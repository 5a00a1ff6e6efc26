#include "blocks/text/EditedBody.h"

#include <QQmlComponent>
#include <QQmlEngine>

namespace tallowby {

void EditedBody::setIsEditing(bool isEditing) {
    if (isEditing && !m_editor) {
        openEditor();
    } else if (!isEditing && m_editor) {
        closeEditor();
    }
    BlockBody::setIsEditing(isEditing);
    Q_EMIT isDisplayShownChanged();
}

void EditedBody::openEditor() {
    const QString file = QStringLiteral("qrc:/qt/qml/Tallowby/Blocks/") + editorFile() + QStringLiteral(".qml");
    QQmlComponent component(qmlEngine(this), QUrl(file));
    QObject *object = component.beginCreate(qmlContext(this));
    m_editor = qobject_cast<AutoExpandingTextEditor *>(object);
    if (!m_editor) {
        qFatal("The text editor could not be made: %s", qUtf8Printable(component.errorString()));
    }
    m_editor->setParent(this);
    m_editor->setParentItem(this);
    m_editor->setText(editedText());
    dressEditor(*m_editor);
    component.completeCreate();

    connect(block(), &Block::rawTextChanged, m_editor, [this] { m_editor->setText(editedText()); });
    connect(m_editor, &AutoExpandingTextEditor::edited, this, [this] { takeText(m_editor->text()); });
    connect(m_editor, &AutoExpandingTextEditor::isBlankChanged, this, &EditedBody::isDisplayShownChanged);
    connect(m_editor, &AutoExpandingTextEditor::committed, this, [this] { commit(); });
    editorOpened(*m_editor);
}

void EditedBody::closeEditor() {
    // It may be in the middle of the key press that closes it.
    m_editor->disconnect(this);
    block()->disconnect(m_editor);
    disconnect(m_editor);
    m_editor->setVisible(false);
    m_editor->deleteLater();
    m_editor = nullptr;
}

void EditedBody::refreshEditor() {
    if (m_editor) {
        dressEditor(*m_editor);
    }
}

void EditedBody::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    BlockBody::geometryChange(newGeometry, oldGeometry);
    refreshEditor();
}

QQuickItem *EditedBody::inputItem() const {
    return m_editor ? m_editor->textEdit() : nullptr;
}

void EditedBody::placeCaret(QPointF point) {
    if (m_editor) {
        m_editor->placeCaret(mapToItem(m_editor, point));
    }
}

} // namespace tallowby
