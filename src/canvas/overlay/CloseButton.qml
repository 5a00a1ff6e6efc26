import QtQuick
import Tallowby.Platform

/// The way back for the pointer, and for whoever's key is taken by another program.
FloatingPill {
    id: close

    property string shortcut

    signal clicked()

    implicitWidth: button.implicitWidth + 4
    implicitHeight: button.implicitHeight + 4

    SymbolButton {
        id: button

        anchors.centerIn: parent
        symbol: "arrow.uturn.backward"
        text: qsTr("Back to desktop")
        onClicked: close.clicked()
    }

    Tip {
        anchors { right: parent.right; top: parent.bottom; topMargin: Theme.spaceSmall }
        text: close.shortcut ? button.text + "  ·  " + close.shortcut : button.text
        isWanted: button.hovered && !button.pressed
    }
}
