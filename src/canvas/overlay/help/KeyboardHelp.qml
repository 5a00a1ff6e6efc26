import QtQuick
import Tallowby.Canvas
import Tallowby.Platform

/// The keys of the canvas on a panel over it. A click beside the panel asks to put it away.
KeyboardHelpOverlay {
    id: overlay

    visible: opacity > 0
    opacity: 0

    Rectangle {
        anchors.fill: parent
        color: Theme.veil
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onClicked: overlay.dismiss()
        onWheel: (wheel) => wheel.accepted = true
    }

    Rectangle {
        id: panel

        anchors.centerIn: parent
        width: lines.implicitWidth + 2 * Theme.spaceWindow
        height: lines.y + lines.implicitHeight + Theme.spaceWindow
        radius: Theme.radiusPanel
        scale: overlay.reducesMotion ? 1 : 0.92
        color: Theme.surfaceRaised
        border { width: 1; color: Theme.hairline }
        Accessible.role: Accessible.Dialog
        Accessible.name: title.text

        SoftShadow {
            z: -1
            blur: 32
            drop: 8
            radius: Theme.radiusPanel
            strength: Theme.isDark ? 0.5 : 0.16
        }

        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
        }

        Text {
            id: title

            x: Theme.spaceWindow
            y: Theme.spaceWindow - 4
            color: Theme.ink
            font { family: Theme.uiFamily; pixelSize: Theme.titleSize; weight: Font.DemiBold }
            text: qsTr("Keyboard Shortcuts")
        }

        SymbolButton {
            anchors { right: parent.right; rightMargin: Theme.spaceCard; verticalCenter: title.verticalCenter }
            symbol: "xmark"
            text: qsTr("Close")
            onClicked: overlay.dismiss()
        }

        Column {
            id: lines

            x: Theme.spaceWindow
            y: title.y + title.height + Theme.spacePanel
            spacing: Theme.spaceSmall

            Repeater {
                model: overlay.shortcuts

                Row {
                    id: line

                    required property var modelData

                    spacing: Theme.spacePanel
                    Accessible.role: Accessible.StaticText
                    Accessible.name: modelData.key + ": " + modelData.desc

                    Row {
                        width: 124
                        spacing: Theme.spaceTight

                        Repeater {
                            model: line.modelData.key.split(" ")

                            KeyCap {
                                required property string modelData

                                text: modelData
                            }
                        }
                    }

                    Text {
                        height: 22
                        color: Theme.ink
                        font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
                        verticalAlignment: Text.AlignVCenter
                        text: line.modelData.desc
                        textFormat: Text.PlainText
                    }
                }
            }
        }
    }

    states: State {
        name: "shown"
        when: overlay.isShown

        PropertyChanges {
            overlay.opacity: 1
            panel.scale: 1
        }
    }
    transitions: [
        Transition {
            to: "shown"
            NumberAnimation { target: overlay; property: "opacity"; duration: Theme.motionIn; easing.type: Easing.OutQuad }
            NumberAnimation { target: panel; property: "scale"; duration: Theme.panelSpringDuration; easing: Theme.panelSpring }
        },
        Transition {
            from: "shown"
            NumberAnimation { target: overlay; property: "opacity"; duration: Theme.motionOut; easing.type: Easing.OutQuad }
        }
    ]
}
