pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tallowby.Canvas
import Tallowby.Platform

/// Colour and width of new strokes.
FloatingPill {
    id: options

    required property ToolPaletteView toolPalette

    implicitWidth: row.implicitWidth + 2 * row.x
    implicitHeight: 44

    Row {
        id: row

        x: 6
        y: 6

        Repeater {
            model: options.toolPalette.pencilColors

            T.AbstractButton {
                id: swatch

                required property var modelData
                readonly property bool isChosen: options.toolPalette.viewModel.pencilColor === modelData.value

                implicitWidth: Theme.hitSize
                implicitHeight: Theme.hitSize
                focusPolicy: Qt.TabFocus
                text: modelData.name
                Accessible.role: Accessible.Button
                Accessible.name: text
                Accessible.checkable: true
                Accessible.checked: isChosen
                onClicked: options.toolPalette.viewModel.pencilColor = modelData.value

                contentItem: Item {
                    Rectangle {
                        anchors.centerIn: parent
                        width: 26
                        height: 26
                        radius: 13
                        color: "transparent"
                        border { width: 2; color: Theme.accent }
                        visible: swatch.isChosen
                    }

                    Rectangle {
                        anchors.centerIn: parent
                        width: 18
                        height: 18
                        radius: 9
                        color: swatch.modelData.shown
                        border { width: 1; color: Theme.hairline }
                        scale: swatch.pressed ? 0.9 : 1
                    }
                }
                background: Item {
                    FocusRing { isShown: swatch.visualFocus; radius: height / 2; anchors.margins: 0 }
                }

                Tip {
                    anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.top; bottomMargin: Theme.spaceCard }
                    text: swatch.text
                    isWanted: swatch.hovered && !swatch.pressed
                }
            }
        }

        PaletteRule {}

        Repeater {
            model: options.toolPalette.pencilWidths

            T.AbstractButton {
                id: pen

                required property real modelData
                readonly property bool isChosen: options.toolPalette.viewModel.pencilWidth === modelData

                implicitWidth: Theme.hitSize
                implicitHeight: Theme.hitSize
                focusPolicy: Qt.TabFocus
                text: qsTr("%1 points wide").arg(modelData)
                Accessible.role: Accessible.Button
                Accessible.name: text
                Accessible.checkable: true
                Accessible.checked: isChosen
                onClicked: options.toolPalette.viewModel.pencilWidth = modelData

                contentItem: Item {
                    Rectangle {
                        anchors.centerIn: parent
                        width: 18
                        height: pen.modelData
                        radius: height / 2
                        color: pen.isChosen ? Theme.accent : pen.hovered ? Theme.ink : Theme.inkSoft
                    }
                }
                background: Rectangle {
                    radius: Theme.radiusCard
                    color: pen.isChosen ? Theme.accentTint : pen.pressed ? Theme.pressWash : pen.hovered ? Theme.hoverWash : "transparent"

                    FocusRing { isShown: pen.visualFocus; radius: parent.radius + 4 }
                }

                Tip {
                    anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.top; bottomMargin: Theme.spaceCard }
                    text: pen.text
                    isWanted: pen.hovered && !pen.pressed
                }
            }
        }
    }
}
