pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Blocks

IconFormatToolbar {
    id: toolbar

    implicitWidth: pill.implicitWidth
    implicitHeight: pill.implicitHeight

    ToolbarPill {
        id: pill

        ToolbarSwatches { colors: toolbar.colors; current: toolbar.color; what: qsTr("Colour"); onChosen: (place) => toolbar.chooseColor(place) }

        ToolbarRule {}

        Repeater {
            model: toolbar.sizes

            ToolbarButton {
                required property real modelData
                required property int index

                figure: modelData
                text: qsTr("%1 points in size").arg(modelData)
                isOn: toolbar.side === index
                onClicked: toolbar.chooseSize(index)
            }
        }
    }
}
