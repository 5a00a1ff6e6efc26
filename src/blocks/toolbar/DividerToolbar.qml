import QtQuick
import Tallowby.Blocks

DividerFormatToolbar {
    id: toolbar

    implicitWidth: pill.implicitWidth
    implicitHeight: pill.implicitHeight

    ToolbarPill {
        id: pill

        ToolbarWidths { widths: toolbar.thicknesses; current: toolbar.thickness; what: qsTr("%1 points thick"); onChosen: (place) => toolbar.chooseThickness(place) }
    }
}
