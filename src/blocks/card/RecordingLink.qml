import QtQuick
import QtQuick.Templates as T
import Tallowby.Platform

/// A word on the card of a recording that does something, as quiet as it can be.
T.AbstractButton {
    id: link

    implicitWidth: implicitContentWidth
    implicitHeight: 16
    focusPolicy: Qt.NoFocus
    Accessible.role: Accessible.Button
    Accessible.name: text

    contentItem: Text {
        color: link.hovered ? Theme.inkSoft : Theme.aside
        font { family: Theme.uiFamily; pixelSize: 10 }
        text: link.text
        textFormat: Text.PlainText
        verticalAlignment: Text.AlignVCenter
    }
}
