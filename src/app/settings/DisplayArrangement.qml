pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.App
import Tallowby.Platform

/// The displays as they stand beside each other, drawn small. A click chooses one.
Item {
    id: arrangement

    required property SettingsWindowController controller
    readonly property size all: Qt.size(Math.max(1, controller.displaysSize.width), Math.max(1, controller.displaysSize.height))
    readonly property real factor: Math.min(width / all.width, 84 / all.height)

    implicitHeight: Math.round(all.height * factor)
    Accessible.ignored: true

    Repeater {
        model: arrangement.controller.displayChoices

        Rectangle {
            id: display

            required property displayChoice modelData
            required property int index
            readonly property rect place: modelData.place

            visible: place.width > 0
            x: Math.round(place.x * arrangement.factor) + 2
            y: Math.round(place.y * arrangement.factor) + 2
            width: Math.round(place.width * arrangement.factor) - 4
            height: Math.round(place.height * arrangement.factor) - 4
            radius: Theme.radiusControl
            color: modelData.isTurned ? Theme.accentTint : hover.hovered ? Theme.hoverWash : Theme.canvas
            border { width: modelData.isTurned ? 2 : 1; color: modelData.isTurned ? Theme.accent : Theme.hairline }

            Text {
                anchors { fill: parent; margins: Theme.spaceSmall }
                text: display.modelData.name
                color: display.modelData.isTurned ? Theme.ink : Theme.inkSoft
                elide: Text.ElideRight
                textFormat: Text.PlainText
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                font { family: Theme.uiFamily; pixelSize: Theme.captionSize }
            }

            HoverHandler { id: hover }
            TapHandler { onTapped: arrangement.controller.chooseDisplay(display.index) }
        }
    }
}
