import QtQuick
import QtQuick.Templates as T
import Tallowby.Platform

/// One of the options of a question. It has the keyboard by Tab when it stands for its group.
T.AbstractButton {
    id: option

    property bool isChosen: false
    property bool isTabStop: false

    implicitHeight: 28
    focusPolicy: isTabStop ? Qt.StrongFocus : Qt.ClickFocus
    hoverEnabled: true
    Accessible.role: Accessible.RadioButton
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: isChosen
    Accessible.onPressAction: option.clicked()
    Accessible.onToggleAction: option.clicked()

    background: Rectangle {
        radius: Theme.radiusControl
        color: option.isChosen ? Theme.accentTint : option.hovered ? Theme.hoverWash : "transparent"

        FocusRing { isShown: option.visualFocus; radius: parent.radius; anchors.margins: -2 }
    }
    contentItem: Item {
        Rectangle {
            x: Theme.spaceSmall
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            radius: 8
            color: "transparent"
            border { width: option.isChosen ? 5 : 1.5; color: option.isChosen ? Theme.accent : Theme.inkSoft }
        }

        Text {
            x: 34
            width: parent.width - x
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.ink
            elide: Text.ElideRight
            font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
            text: option.text
            textFormat: Text.PlainText
        }
    }
}
