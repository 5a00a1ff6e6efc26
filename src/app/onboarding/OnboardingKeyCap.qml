import QtQuick
import Tallowby.Platform

/// A key to be pressed; it gives way and lights up while it is.
Item {
    id: cap

    required property string text
    required property bool isLit

    implicitWidth: Math.max(44, label.implicitWidth + 28)
    implicitHeight: 44

    Rectangle {
        anchors { fill: parent; topMargin: 3 }
        radius: 8
        color: cap.isLit ? Theme.accent : Theme.surfaceEdge
    }

    Rectangle {
        y: cap.isLit ? 2 : 0
        width: parent.width
        height: parent.height - 4
        radius: 8
        color: cap.isLit ? Theme.accent : Theme.surfaceRaised
        border { width: 1; color: cap.isLit ? Theme.accent : Theme.surfaceEdge }

        Text {
            id: label

            anchors.centerIn: parent
            text: cap.text
            color: cap.isLit ? Theme.accentInk : Theme.ink
            textFormat: Text.PlainText
            font { family: Theme.uiFamily; pixelSize: Theme.bodySize; weight: Font.DemiBold }
        }
    }
}
