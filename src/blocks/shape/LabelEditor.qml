pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

/// The editor of a label: centred, and broken where the shape ends.
AutoExpandingTextEditor {
    id: editor

    textEdit: edit
    usedSize: Qt.size(edit.contentWidth, edit.contentHeight)
    preedit: edit.preeditText

    TextEdit {
        id: edit

        y: (editor.height - height) / 2
        width: editor.width
        height: contentHeight
        padding: 0
        horizontalAlignment: TextEdit.AlignHCenter
        wrapMode: TextEdit.Wrap
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
        Accessible.name: qsTr("Label")

        StruckLines { isStruck: editor.isStruck }
    }
}
