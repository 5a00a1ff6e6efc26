import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

/// One row of a checklist. Pointer and keys are with the list.
Item {
    id: row

    required property ChecklistBlockContent list
    required property int item
    required property string words
    required property bool isDone
    required property real rowTop
    required property real rowHeight
    required property bool isEdited
    required property bool isHovered

    y: rowTop
    width: list.width
    height: rowHeight
    Accessible.role: Accessible.CheckBox
    Accessible.name: words ? words : qsTr("New Task")
    Accessible.checkable: true
    Accessible.checked: isDone
    Accessible.onPressAction: list.toggle(item)
    Accessible.onToggleAction: list.toggle(item)

    Symbol {
        visible: row.isHovered
        x: 2
        y: 8
        size: 12
        detail: row.list.detail
        name: "grip"
    }

    // A picture: a rounded rectangle is drawn for the zoom of 1 by the software that paints without a graphics processor.
    Symbol {
        x: 18
        y: 6
        size: 16
        detail: row.list.detail
        name: row.isDone ? "checkmark.circle.fill" : "circle"
        color: row.isDone ? Theme.accent : Theme.inkSoft
    }

    Text {
        visible: !row.isEdited || row.list.isDisplayShown
        x: 42
        y: 6
        width: row.list.width - 76
        color: row.isDone || !row.words ? Theme.inkSoft : Theme.ink
        font: row.list.itemFont
        text: row.words ? row.words : qsTr("New Task")
        textFormat: Text.PlainText
        wrapMode: Text.Wrap

        StruckLines { isStruck: row.isDone && row.words }
    }

    Symbol {
        visible: row.isHovered
        x: row.width - 26
        y: 8
        size: 12
        detail: row.list.detail
        name: "xmark"
        Accessible.role: Accessible.Button
        Accessible.name: qsTr("Delete")
        Accessible.onPressAction: row.list.removeItem(row.item)
    }
}
