pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

AutoExpandingTextEditor {
    id: editor

    /// Whether the text has a width of its own, at which its lines are broken between words.
    property bool wrapsAtWidth: false

    textEdit: edit
    usedSize: Qt.size(edit.contentWidth, edit.contentHeight)
    preedit: edit.preeditText

    TextEdit {
        id: edit

        width: !editor.wrapsAtWidth && editor.wrapWidth > 0 ? editor.wrapWidth + 8 : editor.width
        height: editor.height
        padding: 0
        leftPadding: 4
        rightPadding: 4
        topPadding: 2
        wrapMode: editor.wrapsAtWidth ? TextEdit.Wrap : editor.wrapWidth > 0 ? TextEdit.WrapAnywhere : TextEdit.NoWrap
        textFormat: TextEdit.PlainText
        color: editor.textColor
        font: editor.font
        selectByMouse: true
        selectionColor: Qt.alpha(Theme.accent, 0.3)
        selectedTextColor: edit.color
        cursorDelegate: Caret {
            isShown: edit.cursorVisible // qmllint disable
        }
        Accessible.role: Accessible.EditableText
        Accessible.name: qsTr("Text")

        StruckLines { isStruck: editor.isStruck }
    }
}
