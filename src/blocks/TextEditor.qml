import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

AutoExpandingTextEditor {
    id: editor

    property alias font: edit.font
    property alias textColor: edit.color

    textEdit: edit
    usedSize: Qt.size(edit.contentWidth, edit.contentHeight)

    TextEdit {
        id: edit

        width: editor.wrapWidth > 0 ? editor.wrapWidth : editor.width
        height: editor.height
        padding: 0
        leftPadding: 4
        topPadding: 2
        wrapMode: editor.wrapWidth > 0 ? TextEdit.WrapAnywhere : TextEdit.NoWrap
        textFormat: TextEdit.PlainText
        selectByMouse: true
        selectionColor: Qt.alpha(Theme.accent, 0.3)
        selectedTextColor: color
        cursorDelegate: Caret {
            isShown: edit.cursorVisible
        }
        Accessible.role: Accessible.EditableText
        Accessible.name: qsTr("Text")
    }
}
