import QtQuick
import Tallowby.Platform

/// After the answers have arrived.
Item {
    id: thanks

    signal finished

    Column {
        anchors.centerIn: parent
        spacing: Theme.spaceCard

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "checkmark.seal.fill"
            size: 56
            color: Theme.success
        }

        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.ink
            font { family: Theme.uiFamily; pixelSize: Theme.displaySize; weight: Font.DemiBold }
            text: qsTr("Thank you!")
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }

        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.inkSoft
            font { family: Theme.uiFamily; pixelSize: Theme.emphasisSize }
            text: qsTr("Really appreciate you taking the time.")
        }
    }

    PrimaryButton {
        anchors { right: parent.right; bottom: parent.bottom }
        text: qsTr("Close")
        onClicked: thanks.finished()
    }
}
