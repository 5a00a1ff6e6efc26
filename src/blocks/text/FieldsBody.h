#pragma once

#include "blocks/text/EditedBody.h"

#include <functional>

namespace tallowby {

class AnyCodable;
class FieldEditor;

/// A body of several fields in the block's payload, with one editor that goes from field to field. It reads the payload
/// when it is made and whenever somebody else has changed it.
class FieldsBody : public tallowby::EditedBody {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A base of bodies")

public:
    using EditedBody::EditedBody;

    void setIsEditing(bool isEditing) override;

protected:
    /// Takes over what the payload says.
    virtual void reload() = 0;
    virtual void layOut() = 0;
    /// A key before the editor sees it; true keeps it from there.
    [[nodiscard]] virtual bool handleKey(const QKeyEvent &event) = 0;
    /// Whether some of the content is out of view.
    [[nodiscard]] virtual bool isScrolling() const = 0;

    [[nodiscard]] FieldEditor *field() const;
    /// Changes one key of the payload, without a reload.
    void write(const QString &key, const AnyCodable &value);
    /// Commits composed words to the current field and clears its undo history. Call this before the current field
    /// changes, and before fields are added, removed or renumbered.
    void leaveField();
    /// `leave` names the new field and lays out. The caret goes to a place in characters, or to the end below 0.
    void moveEditor(const std::function<void()> &leave, int caret);
    /// Whether the caret is in the line of the field from which `step` (1 or -1) leads out of it.
    [[nodiscard]] bool isCaretInLastLine(int step) const;
    /// A wheel over the canvas must not stop at whatever lies below the pointer.
    [[nodiscard]] bool takesWheel(const QWheelEvent &event) const;

    void componentComplete() override;
    void editorOpened(AutoExpandingTextEditor &editor) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    bool m_isWriting = false;
};

} // namespace tallowby
