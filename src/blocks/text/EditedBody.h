#pragma once

#include "blocks/text/AutoExpandingTextEditor.h"
#include "canvas/container/BlockBody.h"

namespace tallowby {

/// A body that is typed into: it has its editor only while it is edited, and writes each edit to the block at once.
class EditedBody : public tallowby::BlockBody {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A base of bodies")
    /// Whether the text at rest is shown, or the placeholder in its place: not below an editor that holds any text.
    Q_PROPERTY(bool isDisplayShown READ isDisplayShown NOTIFY isDisplayShownChanged)

public:
    using BlockBody::BlockBody;

    [[nodiscard]] bool isDisplayShown() const { return !m_editor || m_editor->isBlank(); }

    void setIsEditing(bool isEditing) override;
    [[nodiscard]] QQuickItem *inputItem() const override;
    void placeCaret(QPointF point) override;

Q_SIGNALS:
    void isDisplayShownChanged();

protected:
    /// Only while the body is edited.
    [[nodiscard]] AutoExpandingTextEditor *editor() const { return m_editor; }
    /// The name of the QML file that composes the editor.
    [[nodiscard]] virtual QLatin1StringView editorFile() const { return QLatin1StringView("WrappedTextEditor"); }
    /// Face, colour and place; when the editor is made, and whenever one of them may have changed.
    virtual void dressEditor(AutoExpandingTextEditor &editor) = 0;
    /// The text that the editor starts with, and where what is typed goes.
    [[nodiscard]] virtual QString editedText() const { return block()->rawTextOrEmpty(); }
    virtual void takeText(const QString &text) { viewModel().setText(*block(), text); }
    /// Return or Escape.
    virtual void commit() { viewModel().endEditing(); }
    virtual void editorOpened(AutoExpandingTextEditor &) {}
    /// Dresses the editor, if there is one.
    void refreshEditor();
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void openEditor();
    void closeEditor();

    /// Owned as a child.
    AutoExpandingTextEditor *m_editor = nullptr;
};

} // namespace tallowby
