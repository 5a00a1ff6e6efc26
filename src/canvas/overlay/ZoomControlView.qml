import QtQuick
import QtQuick.Templates as T
import Tallowby.Platform

/// Zoom out, the factor in use, which a click resets, and zoom in.
FloatingPill {
    id: control

    required property real zoom

    signal zoomIn()
    signal zoomOut()
    signal resetZoom()

    implicitWidth: row.implicitWidth + 2 * row.x
    implicitHeight: row.implicitHeight + 2 * row.y

    Row {
        id: row

        x: 2
        y: 2

        SymbolButton {
            symbol: "minus"
            text: qsTr("Zoom out")
            onClicked: control.zoomOut()
        }

        T.AbstractButton {
            id: reset

            implicitWidth: 52
            implicitHeight: Theme.hitSize
            focusPolicy: Qt.TabFocus
            text: qsTr("%1%").arg(Math.round(control.zoom * 100))
            Accessible.role: Accessible.Button
            Accessible.name: text
            Accessible.description: qsTr("Reset zoom to 100%")
            onClicked: control.resetZoom()

            contentItem: Item {
                TabularText {
                    anchors.centerIn: parent
                    color: reset.hovered ? Theme.ink : Theme.inkSoft
                    text: reset.text
                }
            }
            background: Rectangle {
                radius: height / 2
                color: reset.pressed ? Theme.pressWash : reset.hovered ? Theme.hoverWash : "transparent"

                FocusRing { isShown: reset.visualFocus; radius: parent.radius }
            }

            Tip {
                anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.top; bottomMargin: Theme.spaceSmall }
                text: qsTr("Reset zoom to 100%")
                isWanted: reset.hovered && !reset.pressed
            }
        }

        SymbolButton {
            symbol: "plus"
            text: qsTr("Zoom in")
            onClicked: control.zoomIn()
        }
    }
}
