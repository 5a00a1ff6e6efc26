import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

/// An editor whose text wraps at its width.
FieldEditor {
    id: editor

    textEdit: edit
    usedSize: Qt.size(edit.contentWidth, edit.contentHeight)
    preedit: edit.preeditText

    TextEdit {
        id: edit

        width: editor.width
        height: Math.max(editor.height, contentHeight)
        padding: 0
        wrapMode: TextEdit.Wrap
        textFormat: TextEdit.PlainText
        horizontalAlignment: editor.isRightAligned ? TextEdit.AlignRight : TextEdit.AlignLeft
        color: editor.textColor
        font: editor.font
        selectByMouse: true
        selectionColor: Qt.alpha(Theme.accent, 0.3)
        selectedTextColor: edit.color
        cursorDelegate: Caret {
            isShown: edit.cursorVisible // qmllint disable
        }
        Accessible.role: Accessible.EditableText
        Accessible.name: editor.fieldName

        StruckLines { isStruck: editor.isStruck }
    }
}
