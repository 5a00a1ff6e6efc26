import QtQuick
import Tallowby.Platform

/// The name of a key, as it stands on one.
Rectangle {
    id: cap

    required property string text

    implicitWidth: Math.max(label.implicitWidth + 2 * 7, height)
    implicitHeight: 22
    radius: 5
    color: Theme.hoverWash
    border { width: 1; color: Theme.hairline }

    Text {
        id: label

        anchors.centerIn: parent
        color: Theme.ink
        font { family: Theme.uiFamily; pixelSize: Theme.captionSize; weight: Font.Medium }
        text: cap.text
        textFormat: Text.PlainText
    }
}
