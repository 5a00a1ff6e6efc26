import QtQuick
import QtQuick.Controls.Basic
import Tallowby.Platform

/// A row of a window's menu: its text and the key that does the same.
MenuItem {
    id: row

    property string keys
    property bool startsGroup: false
    readonly property int groupGap: startsGroup ? 9 : 0

    implicitHeight: 28 + groupGap
    padding: 0
    focusPolicy: Qt.NoFocus
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.description: keys

    background: Item {
        Rectangle {
            x: Theme.spaceTight
            y: 4
            width: parent.width - 2 * x
            height: 1
            visible: row.startsGroup
            color: Theme.hairline
        }

        Rectangle {
            y: row.groupGap
            width: parent.width
            height: 28
            radius: Theme.radiusControl
            color: row.down ? Theme.pressWash : row.highlighted ? Theme.hoverWash : "transparent"
        }
    }
    contentItem: Item {
        Text {
            x: Theme.spaceSmall
            y: row.groupGap
            height: 28
            verticalAlignment: Text.AlignVCenter
            color: Theme.ink
            text: row.text
            textFormat: Text.PlainText
            font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
        }

        Text {
            anchors { right: parent.right; rightMargin: Theme.spaceSmall }
            y: row.groupGap
            height: 28
            verticalAlignment: Text.AlignVCenter
            color: Theme.inkSoft
            text: row.keys
            textFormat: Text.PlainText
            font { family: Theme.uiFamily; pixelSize: Theme.labelSize }
        }
    }
}
