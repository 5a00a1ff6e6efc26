import QtQuick
import Tallowby.Blocks

ColorFormatToolbar {
    id: toolbar

    implicitWidth: pill.implicitWidth
    implicitHeight: pill.implicitHeight

    ToolbarPill {
        id: pill

        ToolbarSwatches { colors: toolbar.colors; current: toolbar.color; what: qsTr("Colour"); onChosen: (place) => toolbar.chooseColor(place) }
    }
}
