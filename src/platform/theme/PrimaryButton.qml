import QtQuick
import QtQuick.Controls.Basic
import Tallowby.Platform

/// The one thing that a window asks for.
AbstractButton {
    id: button

    implicitWidth: Math.max(88, implicitContentWidth + 32)
    implicitHeight: 32
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: text

    background: Rectangle {
        radius: Theme.radiusControl
        color: Theme.accent

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: button.down ? Theme.pressWash : button.hovered ? Theme.hoverWash : "transparent"
        }

        FocusRing { isShown: button.visualFocus; radius: parent.radius + 4 }
    }
    contentItem: Text {
        text: button.text
        color: Theme.accentInk
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        font { family: Theme.uiFamily; pixelSize: Theme.bodySize; weight: Font.DemiBold }
    }
}
