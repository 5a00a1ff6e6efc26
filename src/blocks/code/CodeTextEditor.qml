import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

CodeEditor {
    id: editor

    textEdit: edit
    usedSize: Qt.size(edit.contentWidth, edit.contentHeight)
    preedit: edit.preeditText

    TextEdit {
        id: edit

        width: editor.wrapWidth > 0 ? editor.wrapWidth : editor.width
        height: editor.height
        padding: 0
        wrapMode: editor.wrapWidth > 0 ? TextEdit.WrapAnywhere : TextEdit.NoWrap
        textFormat: TextEdit.PlainText
        color: editor.textColor
        font: editor.font
        selectByMouse: true
        selectionColor: Qt.alpha(Theme.codeInk, 0.25)
        selectedTextColor: edit.color
        cursorDelegate: Caret {
            isShown: edit.cursorVisible // qmllint disable
            color: Theme.codeInk
        }
        Accessible.role: Accessible.EditableText
        Accessible.name: qsTr("Code")
    }
}
