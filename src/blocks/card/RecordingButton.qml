import QtQuick
import QtQuick.Templates as T
import Tallowby.Platform

/// The one thing to do on the card of a recording.
T.AbstractButton {
    id: button

    required property string symbol
    required property real detail
    property bool isStrong: false
    /// Only the symbol.
    property bool isRound: false

    implicitWidth: isRound ? 40 : implicitContentWidth + 12
    implicitHeight: isRound ? 40 : 30
    focusPolicy: Qt.NoFocus
    Accessible.role: Accessible.Button
    Accessible.name: text

    background: Rectangle {
        radius: height / 2
        color: button.isStrong ? Theme.danger : button.hovered ? Theme.hoverWash : Theme.surface
        border { width: 1; color: button.isStrong ? Theme.danger : Theme.surfaceEdge }
    }
    contentItem: Row {
        leftPadding: button.isRound ? (button.width - Theme.iconSmall) / 2 : 12
        spacing: Theme.spaceSmall

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: button.symbol
            detail: button.detail
            color: button.isStrong ? Theme.surface : button.isRound ? Theme.ink : Theme.danger
        }

        Text {
            visible: !button.isRound
            anchors.verticalCenter: parent.verticalCenter
            color: button.isStrong ? Theme.surface : Theme.ink
            font { family: Theme.uiFamily; pixelSize: Theme.labelSize; weight: Font.Medium }
            text: button.text
            textFormat: Text.PlainText
        }
    }
}
