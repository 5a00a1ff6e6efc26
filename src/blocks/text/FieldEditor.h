#pragma once

#include "blocks/text/AutoExpandingTextEditor.h"

#include <functional>

namespace tallowby {

/// An editor of one field among several, whose owner sees each key first: to walk on, to add a row, to take a paste
/// apart. The text wraps at the editor's width.
class FieldEditor : public tallowby::AutoExpandingTextEditor {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isRightAligned READ isRightAligned WRITE setIsRightAligned NOTIFY isRightAlignedChanged)
    Q_PROPERTY(QString fieldName READ fieldName WRITE setFieldName NOTIFY fieldNameChanged)

public:
    using AutoExpandingTextEditor::AutoExpandingTextEditor;

    [[nodiscard]] bool isRightAligned() const { return m_isRightAligned; }
    void setIsRightAligned(bool isRightAligned);
    /// For those who do not see the screen.
    [[nodiscard]] const QString &fieldName() const { return m_fieldName; }
    void setFieldName(const QString &name);
    /// Whether the owner takes the key. Asked only while no input method composes.
    void setKeyHandler(std::function<bool(const QKeyEvent &)> handler) { m_keyHandler = std::move(handler); }

    [[nodiscard]] bool isCaretAtStart() const { return caret() == 0 && !hasSelection(); }
    [[nodiscard]] bool isCaretAtEnd() const { return caret() == text().size() && !hasSelection(); }

Q_SIGNALS:
    void isRightAlignedChanged();
    void fieldNameChanged();

protected:
    [[nodiscard]] bool handleKey(const QKeyEvent &event) override;

private:
    bool m_isRightAligned = false;
    QString m_fieldName;
    std::function<bool(const QKeyEvent &)> m_keyHandler;
};

} // namespace tallowby
