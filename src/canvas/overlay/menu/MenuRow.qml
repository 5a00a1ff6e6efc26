import QtQuick
import Tallowby.Platform

/// A row of a menu: symbol, text, and the key that does the same or the sign that more opens.
Item {
    id: row

    required property int index
    required property string text
    required property string symbol
    required property string shortcut
    required property bool startsGroup
    required property bool hasChildren
    property bool isCurrent: false
    readonly property int groupGap: startsGroup ? 9 : 0

    /// In the scene.
    signal hovered(point at)
    signal chosen()

    implicitWidth: label.x + label.implicitWidth + Theme.spaceWindow + keys.implicitWidth + Theme.spaceSmall
    implicitHeight: 28 + groupGap
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.description: shortcut
    Accessible.selected: isCurrent
    Accessible.onPressAction: row.chosen()

    Rectangle {
        x: Theme.spaceTight
        y: 4
        width: parent.width - 2 * x
        height: 1
        visible: row.startsGroup
        color: Theme.hairline
    }

    Rectangle {
        id: ground

        y: row.groupGap
        width: parent.width
        height: 28
        radius: Theme.radiusControl
        color: area.pressed ? Theme.pressWash : row.isCurrent ? Theme.hoverWash : "transparent"

        Symbol {
            x: Theme.spaceSmall
            anchors.verticalCenter: parent.verticalCenter
            name: row.symbol
            color: row.isCurrent ? Theme.ink : Theme.inkSoft
        }

        Text {
            id: label

            x: 34
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.ink
            font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
            text: row.text
            textFormat: Text.PlainText
        }

        Text {
            id: keys

            anchors { right: parent.right; rightMargin: Theme.spaceSmall; verticalCenter: parent.verticalCenter }
            color: Theme.inkSoft
            font { family: Theme.uiFamily; pixelSize: Theme.labelSize }
            text: row.shortcut
            textFormat: Text.PlainText
        }

        Symbol {
            anchors { right: parent.right; rightMargin: Theme.spaceSmall; verticalCenter: parent.verticalCenter }
            visible: row.hasChildren
            name: "chevron.right"
            size: 10
        }

        MouseArea {
            id: area

            anchors.fill: parent
            hoverEnabled: true
            onEntered: row.hovered(mapToItem(null, mouseX, mouseY))
            onPositionChanged: (mouse) => row.hovered(mapToItem(null, mouse.x, mouse.y))
            onClicked: row.chosen()
        }
    }
}
