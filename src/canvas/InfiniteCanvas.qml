pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Canvas
import Tallowby.Platform

InfiniteCanvasView {
    id: view

    Accessible.role: Accessible.Canvas
    Accessible.name: qsTr("Canvas")
    selectionOutline: Component {
        SelectionOutline { zoom: view.zoom }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.canvas
    }

    DotGridBackground {
        anchors.fill: parent
        origin: view.origin
        zoom: view.zoom
        color: Theme.dot
    }

    // All blocks hang on this one node, so that a pan or a zoom moves nothing else.
    Item {
        x: view.origin.x
        y: view.origin.y
        scale: view.zoom
        transformOrigin: Item.TopLeft

        Repeater {
            model: view.viewModel.visibleBlocksModel
            delegate: BlockContainer { canvas: view }
        }
    }

    EmptyHint {
        anchors.centerIn: parent
        isWanted: view.viewModel.isEmpty
    }

    ZoomControlView {
        anchors { left: parent.left; bottom: parent.bottom; margins: Theme.spacePanel }
        zoom: view.zoom
        onZoomIn: view.zoomIn()
        onZoomOut: view.zoomOut()
        onResetZoom: view.resetZoom()
    }

    CloseButton {
        anchors { right: parent.right; top: parent.top; margins: Theme.spacePanel }
        shortcut: view.closeShortcut
        onClicked: view.requestClose()
    }
}
