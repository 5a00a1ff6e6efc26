import QtQuick
import Tallowby.Platform

/// A symbol that can be chosen, in the grid or in the row of categories. The keyboard stays where it is.
Item {
    id: cell

    required property string symbol
    required property string text
    required property bool isCurrent
    property int iconSize: Theme.iconLarge
    readonly property bool isHovered: area.containsMouse

    signal chosen()

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: isCurrent
    Accessible.onPressAction: chosen()

    Rectangle {
        anchors { fill: parent; margins: 2 }
        radius: Theme.radiusControl
        color: cell.isCurrent ? Theme.accentTint : area.pressed ? Theme.pressWash : area.containsMouse ? Theme.hoverWash : "transparent"
    }

    Symbol {
        anchors.centerIn: parent
        name: cell.symbol
        size: cell.iconSize
        color: cell.isCurrent ? Theme.accent : Theme.ink
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        onClicked: cell.chosen()
    }
}
