import QtQuick
import Tallowby.Blocks

NoteFormatToolbar {
    id: toolbar

    implicitWidth: pill.implicitWidth
    implicitHeight: pill.implicitHeight

    ToolbarPill {
        id: pill

        ToolbarSwatches { colors: toolbar.papers; current: toolbar.paper; what: qsTr("Paper"); onChosen: (place) => toolbar.choosePaper(place) }
    }
}
