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

        ToolbarWidths { widths: toolbar.widths; current: toolbar.strokeWidth; what: qsTr("%1 points wide"); onChosen: (place) => toolbar.chooseWidth(place) }
    }
}
