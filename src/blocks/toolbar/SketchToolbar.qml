pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Blocks

SketchFormatToolbar {
    id: toolbar

    implicitWidth: pill.implicitWidth
    implicitHeight: pill.implicitHeight

    ToolbarPill {
        id: pill

        ToolbarSwatches { colors: toolbar.colors; current: toolbar.color; what: qsTr("Stroke"); onChosen: (place) => toolbar.chooseColor(place) }

        ToolbarRule {}

        Repeater {
            model: toolbar.widths

            ToolbarButton {
                required property real modelData
                required property int index

                lineWidth: modelData
                text: qsTr("%1 points wide").arg(modelData)
                isOn: toolbar.strokeWidth === index
                onClicked: toolbar.chooseWidth(index)
            }
        }
    }
}
