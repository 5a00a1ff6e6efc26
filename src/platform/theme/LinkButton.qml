import QtQuick
import QtQuick.Controls.Basic
import Tallowby.Platform

/// A way to somewhere else, as quiet as the text around it.
AbstractButton {
    id: link

    implicitHeight: 24
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.role: Accessible.Link
    Accessible.name: text

    background: FocusRing { isShown: link.visualFocus; radius: Theme.radiusControl }
    contentItem: Text {
        text: link.text
        color: link.hovered ? Theme.ink : Theme.inkSoft
        textFormat: Text.PlainText
        verticalAlignment: Text.AlignVCenter
        font { family: Theme.uiFamily; pixelSize: Theme.captionSize; underline: true }
    }

    HoverHandler { cursorShape: Qt.PointingHandCursor }
}
