import QtQuick
import QtQuick.Templates as T
import Tallowby.Platform

/// A button that shows a symbol, a figure or a line of a width, with a tint while it is on. Its text is its accessible
/// name. Pointer clicks leave the keyboard focus where it is.
T.AbstractButton {
    id: button

    property string symbol
    property string figure
    property real lineWidth: 0
    property bool isToggle: true
    property bool isOn: false
    readonly property color mark: !enabled ? Qt.alpha(Theme.inkSoft, 0.4) : isOn ? Theme.accent : hovered ? Theme.ink : Theme.inkSoft

    implicitWidth: figure.length > 2 ? 36 : 28
    implicitHeight: 28
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.checkable: isToggle
    Accessible.checked: isOn

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            visible: button.symbol
            name: button.symbol || "minus"
            color: button.mark
        }

        Text {
            anchors.centerIn: parent
            color: button.mark
            font { family: Theme.uiFamily; pixelSize: Theme.labelSize; weight: Font.Medium }
            text: button.figure
            textFormat: Text.PlainText
        }

        Rectangle {
            anchors.centerIn: parent
            width: 16
            height: button.lineWidth
            radius: height / 2
            color: button.mark
        }
    }
    background: Rectangle {
        radius: Theme.radiusControl
        color: button.isOn ? Theme.accentTint : button.pressed ? Theme.pressWash : button.hovered ? Theme.hoverWash : "transparent"

        FocusRing { isShown: button.visualFocus; radius: parent.radius; anchors.margins: 0 }
    }

    ToolbarTip {
        text: button.text
        isWanted: button.hovered && !button.pressed
    }
}
