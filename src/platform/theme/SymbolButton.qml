import QtQuick
import QtQuick.Templates as T
import Tallowby.Platform

/// A button that shows a symbol; its text is its accessible name. Pointer clicks leave the keyboard focus where it is.
T.AbstractButton {
    id: button

    property string symbol

    implicitWidth: Theme.hitSize
    implicitHeight: Theme.hitSize
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: text

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: button.symbol
            color: button.hovered ? Theme.ink : Theme.inkSoft
        }
    }
    background: Rectangle {
        radius: height / 2
        color: button.pressed ? Theme.pressWash : button.hovered ? Theme.hoverWash : "transparent"

        FocusRing { isShown: button.visualFocus; radius: parent.radius }
    }
}
