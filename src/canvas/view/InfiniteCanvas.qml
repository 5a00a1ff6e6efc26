pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Canvas
import Tallowby.Platform

InfiniteCanvasView {
    id: view

    Accessible.role: Accessible.Canvas
    Accessible.name: qsTr("Canvas")
    selectionOutline: Component {
        SelectionOutline {
            zoom: view.zoom
            lineWidth: view.viewModel.selectionCount > 1 ? 1 : 1.5
            visible: !view.isGestureRunning || view.viewModel.activeTool.kind === CanvasTools.Select
        }
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
            model: view.containerRows
            delegate: BlockContainer { canvas: view }
        }
    }

    WholeRepaint {
        anchors.fill: parent
        canvas: view
    }

    LiveSketchOverlay {
        anchors.fill: parent
        state: view.liveSketch
        origin: view.origin
        zoom: view.zoom
        color: view.viewModel.pencilColor
        strokeWidth: view.viewModel.pencilWidth
    }

    SelectionChrome {
        anchors.fill: parent
        canvas: view
    }

    Rectangle {
        x: view.marquee.x
        y: view.marquee.y
        width: view.marquee.width
        height: view.marquee.height
        visible: width > 0 || height > 0
        color: Qt.alpha(Theme.accent, 0.08)
        border { width: 1; color: Theme.accent }
    }

    BlockJump {
        anchors.fill: parent
        canvas: view
    }

    EmptyHint {
        anchors.centerIn: parent
        isWanted: view.viewModel.isEmpty
    }

    ZoomControlView {
        id: zoomControl

        anchors { left: parent.left; bottom: parent.bottom; margins: Theme.spacePanel }
        zoom: view.zoom
        onZoomIn: view.zoomIn()
        onZoomOut: view.zoomOut()
        onResetZoom: view.resetZoom()
    }

    ToolPalette {
        id: toolPalette

        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: Theme.spacePanel }
        viewModel: view.viewModel
        isGestureRunning: view.isGestureRunning
    }

    MiniMap {
        id: miniMap

        anchors { right: parent.right; bottom: parent.bottom; margins: Theme.spacePanel }
        canvas: view
        onJump: (offset) => view.jumpTo(offset)
    }

    CloseButton {
        id: closeButton

        anchors { right: parent.right; top: parent.top; margins: Theme.spacePanel }
        shortcut: view.closeShortcut
        onClicked: view.requestClose()
    }

    FormatToolbarView {
        id: formatToolbar

        canvas: view
        obstacles: [toolPalette, zoomControl, miniMap, closeButton]
        isHeldBack: contextMenu.visible
        opacity: isShown ? 1 : 0
        visible: opacity > 0
        Accessible.role: Accessible.ToolBar
        Accessible.name: qsTr("Format")

        Behavior on opacity {
            NumberAnimation { duration: formatToolbar.isShown ? Theme.motionIn : Theme.motionOut; easing.type: Easing.OutQuad }
        }
    }

    CanvasNotice {
        anchors { horizontalCenter: parent.horizontalCenter; bottom: toolPalette.top; bottomMargin: Theme.spacePanel }
        canvas: view
    }

    ContextMenu {
        id: contextMenu

        anchors.fill: parent
        canvas: view
    }

    KeyboardHelp {
        anchors.fill: parent
        canvas: view
    }
}
