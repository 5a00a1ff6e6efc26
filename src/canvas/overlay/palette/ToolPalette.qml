pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Canvas
import Tallowby.Platform

/// The looks of the palette: the tools in a pill, and above it what can be set about the active one. Gone while a block
/// is being edited.
ToolPaletteView {
    id: toolPalette

    readonly property bool isWanted: !viewModel.isAnyBlockEditing
    readonly property int fade: isWanted && !isFaint ? Theme.motionIn : Theme.motionOut

    implicitWidth: pill.implicitWidth
    implicitHeight: pill.implicitHeight
    opacity: !isWanted ? 0 : isFaint ? 0.4 : 1
    visible: opacity > 0
    Accessible.role: Accessible.ToolBar
    Accessible.name: qsTr("Tools")

    Behavior on opacity {
        NumberAnimation { duration: toolPalette.fade; easing.type: Easing.OutQuad }
    }

    FloatingPill {
        id: pill

        z: 1

        implicitWidth: row.implicitWidth + 2 * row.x
        implicitHeight: 44

        Row {
            id: row

            x: 6
            y: 6

            Repeater {
                model: toolPalette.tools

                ToolIconButton {
                    required property var modelData
                    required property int index

                    iconName: modelData.symbol
                    text: modelData.name
                    numberLabel: index + 1
                    isSelected: toolPalette.activeTool === index
                    onClicked: toolPalette.chooseTool(index)
                }
            }

            PaletteRule {}

            ToolIconButton {
                iconName: toolPalette.viewModel.toolLocked ? "lock" : "lock.open"
                iconSize: Theme.iconSmall
                text: qsTr("Keep tool active after use")
                isSelected: toolPalette.viewModel.toolLocked
                onClicked: toolPalette.toggleLock()
            }
        }
    }

    PencilOptions {
        anchors { horizontalCenter: pill.horizontalCenter; bottom: pill.top; bottomMargin: Theme.spaceSmall }
        toolPalette: toolPalette
        visible: toolPalette.isPencilActive
    }

    ShapePicker {
        anchors { horizontalCenter: pill.horizontalCenter; bottom: pill.top; bottomMargin: Theme.spaceSmall }
        toolPalette: toolPalette
        visible: toolPalette.activeShape >= 0
    }
}
