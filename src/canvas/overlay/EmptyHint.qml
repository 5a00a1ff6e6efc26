import QtQuick
import Tallowby.Platform

/// What an empty canvas says.
Column {
    id: hint

    required property bool isWanted

    spacing: Theme.spaceSmall
    opacity: isWanted ? 1 : 0
    visible: opacity > 0

    Behavior on opacity {
        NumberAnimation { duration: Theme.motionIn; easing.type: Easing.OutQuad }
    }

    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        color: Theme.inkSoft
        font { family: Theme.uiFamily; pixelSize: Theme.titleSize; weight: Font.Medium }
        text: qsTr("Start typing anywhere")
    }

    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        color: Theme.inkSoft
        font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
        text: qsTr("or right-click to add blocks  ·  drag images to paste")
    }
}
