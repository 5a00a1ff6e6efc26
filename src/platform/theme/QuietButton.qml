import QtQuick
import QtQuick.Controls.Basic
import Tallowby.Platform

/// A quiet button with an outline.
AbstractButton {
    id: button

    implicitWidth: implicitContentWidth + 24
    implicitHeight: 32
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: text

    background: Rectangle {
        radius: Theme.radiusControl
        color: button.down || button.hovered ? Theme.hoverWash : "transparent"
        border { width: 1; color: Theme.hairline }

        FocusRing { isShown: button.visualFocus; radius: parent.radius + 4 }
    }

    contentItem: Text {
        text: button.text
        color: Theme.ink
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        font.family: Theme.uiFamily
        font.pixelSize: Theme.bodySize
    }
}
