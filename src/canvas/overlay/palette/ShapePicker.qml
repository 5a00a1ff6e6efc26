pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Canvas
import Tallowby.Platform

/// Which shape the next drag draws.
FloatingPill {
    id: picker

    required property ToolPaletteView toolPalette

    implicitWidth: row.implicitWidth + 2 * row.x
    implicitHeight: 44

    Row {
        id: row

        x: 6
        y: 6

        Repeater {
            model: picker.toolPalette.shapes

            ToolIconButton {
                required property var modelData
                required property int index

                iconName: modelData.symbol
                text: modelData.name
                isSelected: picker.toolPalette.activeShape === index
                iconSize: 18
                onClicked: picker.toolPalette.chooseShape(index)
            }
        }
    }
}
