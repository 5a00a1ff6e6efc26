import QtQuick
import QtQuick.Controls.Basic
import Tallowby.Platform

/// One of several choices, with a second line in a softer voice.
AbstractButton {
    id: choice

    property string detail

    checkable: false
    implicitHeight: 44
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.role: Accessible.RadioButton
    Accessible.name: text
    Accessible.description: detail
    Accessible.checked: checked

    background: Rectangle {
        radius: Theme.radiusControl
        color: choice.hovered ? Theme.hoverWash : "transparent"

        FocusRing { isShown: choice.visualFocus; radius: parent.radius; anchors.margins: -2 }
    }

    contentItem: Item {
        Rectangle {
            x: 8
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            radius: 8
            color: "transparent"
            border.width: choice.checked ? 5 : 1.5
            border.color: choice.checked ? Theme.accent : Theme.inkSoft
        }

        Column {
            x: 36
            width: parent.width - x
            anchors.verticalCenter: parent.verticalCenter

            Text {
                width: parent.width
                text: choice.text
                color: Theme.ink
                elide: Text.ElideRight
                font.family: Theme.uiFamily
                font.pixelSize: Theme.bodySize
            }

            Text {
                width: parent.width
                text: choice.detail
                color: Theme.inkSoft
                elide: Text.ElideRight
                font.family: Theme.uiFamily
                font.pixelSize: Theme.captionSize
            }
        }
    }
}
