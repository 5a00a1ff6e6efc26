#pragma once

#include "blocks/text/AutoExpandingTextEditor.h"

class QTextCursor;

namespace tallowby {

/// The editor of a code block. Return makes a line with the indentation of the one before, Tab indents by blanks;
/// Escape, or Ctrl and Return, end the editing.
class CodeEditor : public tallowby::AutoExpandingTextEditor {
    Q_OBJECT
    QML_ELEMENT

public:
    static constexpr int kIndentation = 4;

    using AutoExpandingTextEditor::AutoExpandingTextEditor;

    using AutoExpandingTextEditor::document;

protected:
    [[nodiscard]] bool handleKey(const QKeyEvent &event) override;

private:
    [[nodiscard]] QTextCursor selection() const;
    void breakLine();
    void indent();
    void outdent();
};

} // namespace tallowby
