pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tallowby.Platform

/// Colours to choose from; the chosen one has a ring.
Row {
    id: swatches

    required property var colors
    required property int current
    /// Of which thing, for a screen reader.
    required property string what

    signal chosen(int place)

    Repeater {
        model: swatches.colors

        T.AbstractButton {
            id: swatch

            required property var modelData
            required property int index
            readonly property bool isChosen: swatches.current === index

            implicitWidth: 26
            implicitHeight: 28
            focusPolicy: Qt.TabFocus
            text: modelData.name
            Accessible.role: Accessible.Button
            Accessible.name: swatches.what + ": " + text
            Accessible.checkable: true
            Accessible.checked: isChosen
            onClicked: swatches.chosen(index)

            contentItem: Item {
                Rectangle {
                    anchors.centerIn: parent
                    width: 24
                    height: 24
                    radius: 12
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
                    border { width: 1; color: Qt.alpha(Theme.ink, 0.18) }
                    scale: swatch.pressed ? 0.9 : 1
                }
            }
            background: Item {
                FocusRing { isShown: swatch.visualFocus; radius: height / 2; anchors.margins: 0 }
            }

            ToolbarTip {
                text: swatch.text
                isWanted: swatch.hovered && !swatch.pressed
            }
        }
    }
}
