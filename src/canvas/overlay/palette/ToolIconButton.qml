import QtQuick
import QtQuick.Templates as T
import Tallowby.Platform

/// A tool on the palette: its symbol, the digit that chooses it in the corner, and a tint while it is the active one.
T.AbstractButton {
    id: button

    required property string iconName
    property string numberLabel
    property bool isSelected: false
    property int iconSize: Theme.iconLarge

    implicitWidth: 36
    implicitHeight: Theme.hitSize
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: numberLabel
    Accessible.checkable: true
    Accessible.checked: isSelected

    contentItem: Item {
        Symbol {
            anchors { centerIn: parent; horizontalCenterOffset: button.numberLabel ? -1 : 0 }
            name: button.iconName
            size: button.iconSize
            color: button.isSelected ? Theme.accent : button.hovered ? Theme.ink : Theme.inkSoft
        }

        Text {
            anchors { right: parent.right; bottom: parent.bottom; rightMargin: 3; bottomMargin: 1 }
            color: button.isSelected ? Theme.accent : Theme.inkSoft
            font { family: Theme.uiFamily; pixelSize: 9; weight: Font.Medium }
            text: button.numberLabel
            textFormat: Text.PlainText
        }
    }
    background: Rectangle {
        radius: Theme.radiusCard
        color: button.isSelected ? Theme.accentTint : button.pressed ? Theme.pressWash : button.hovered ? Theme.hoverWash : "transparent"

        FocusRing { isShown: button.visualFocus; radius: parent.radius + 4 }
    }

    Tip {
        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.top; bottomMargin: Theme.spaceCard }
        text: button.numberLabel ? button.text + "  ·  " + button.numberLabel : button.text
        isWanted: button.hovered && !button.pressed
    }
}
