pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Platform

/// A line of text whose figures are all equally wide, so that a number that changes stays where it is.
Row {
    id: line

    required property string text
    property color color: Theme.ink
    property alias font: figure.font

    TextMetrics {
        id: figure

        font { family: Theme.uiFamily; pixelSize: Theme.labelSize; weight: Font.Medium }
        text: "0"
    }

    Repeater {
        model: line.text.length

        Text {
            required property int index
            readonly property string character: line.text.charAt(index)

            width: "0123456789".includes(character) ? figure.advanceWidth : implicitWidth
            color: line.color
            font: line.font
            horizontalAlignment: Text.AlignHCenter
            text: character
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
