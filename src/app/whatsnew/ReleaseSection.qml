pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.App
import Tallowby.Platform

/// One version and what came with it.
Column {
    id: section

    required property releaseNotes notes

    spacing: 10
    Accessible.role: Accessible.ListItem
    Accessible.name: notes.version

    Row {
        x: Theme.spacePanel + 4
        spacing: Theme.spaceSmall

        Text {
            text: section.notes.version
            color: Theme.ink
            textFormat: Text.PlainText
            font { family: Theme.uiFamily; pixelSize: Theme.emphasisSize; weight: Font.DemiBold }
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: section.notes.remark
            color: Theme.inkSoft
            textFormat: Text.PlainText
            font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
        }
    }

    Repeater {
        model: section.notes.points

        Item {
            id: point

            required property string modelData

            x: Theme.spacePanel + 4
            width: section.width - 2 * x
            implicitHeight: words.implicitHeight

            Rectangle {
                y: 7
                width: 5
                height: 5
                radius: 2.5
                color: Theme.accent
            }

            Text {
                id: words

                x: 18
                width: parent.width - x
                text: point.modelData
                color: Theme.ink
                linkColor: Theme.accent
                wrapMode: Text.Wrap
                lineHeight: 1.2
                textFormat: Text.MarkdownText
                font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
}
