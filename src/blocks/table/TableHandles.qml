import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

/// The outline of the edited cell, and around the table what adds and removes rows and columns; of the same size on
/// screen at any zoom.
Item {
    id: handles

    required property TableBlockContent table
    readonly property rect cell: table.editedRect

    Rectangle {
        x: handles.cell.x
        y: handles.cell.y
        width: handles.cell.width + 1
        height: handles.cell.height + 1
        visible: handles.cell.width > 0
        color: "transparent"
        border { width: 1.5; color: Theme.accent; pixelAligned: false }
    }

    TableHandle {
        anchor: Qt.point(handles.table.width / 2, handles.table.height)
        side: Qt.point(0, 1)
        zoomed: handles.table.chromeScale
        symbol: "plus"
        text: qsTr("Add row")
        onClicked: handles.table.addRow()
    }

    TableHandle {
        anchor: Qt.point(handles.table.width, handles.table.height / 2)
        side: Qt.point(1, 0)
        zoomed: handles.table.chromeScale
        symbol: "plus"
        text: qsTr("Add column")
        onClicked: handles.table.addColumn()
    }

    TableHandle {
        visible: handles.table.canRemoveRow && handles.cell.width > 0
        anchor: Qt.point(0, handles.cell.y + handles.cell.height / 2)
        side: Qt.point(-1, 0)
        zoomed: handles.table.chromeScale
        symbol: "minus"
        text: qsTr("Remove row")
        onClicked: handles.table.removeRow()
    }

    TableHandle {
        visible: handles.table.canRemoveColumn && handles.cell.width > 0
        anchor: Qt.point(handles.cell.x + handles.cell.width / 2, 0)
        side: Qt.point(0, -1)
        zoomed: handles.table.chromeScale
        symbol: "minus"
        text: qsTr("Remove column")
        onClicked: handles.table.removeColumn()
    }
}
