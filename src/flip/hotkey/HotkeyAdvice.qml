pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Tallowby.Flip
import Tallowby.Platform

/// Why the hot key does not work, and others that would, to be chosen with a click. As high as it has something to say.
Column {
    id: advice

    required property HotkeyAdvisor advisor

    visible: advisor.problem.length > 0 || advisor.limitation.length > 0
    spacing: Theme.spaceSmall

    Text {
        visible: text.length > 0
        width: parent.width
        text: advice.advisor.limitation
        color: Theme.inkSoft
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        font { family: Theme.uiFamily; pixelSize: Theme.labelSize }
    }

    Text {
        visible: text.length > 0
        width: parent.width
        text: advice.advisor.problem
        color: Theme.danger
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        font { family: Theme.uiFamily; pixelSize: Theme.labelSize }
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    LinkButton {
        visible: advice.advisor.isAssigned
        text: qsTr("Ask the desktop again")
        onClicked: advice.advisor.askDesktop()
    }

    Row {
        visible: !advice.advisor.isAssigned
        spacing: Theme.spaceSmall

        Repeater {
            model: advice.advisor.alternatives

            AbstractButton {
                id: offer

                required property string modelData
                required property int index

                implicitWidth: implicitContentWidth + 24
                implicitHeight: 28
                text: modelData
                focusPolicy: Qt.TabFocus
                hoverEnabled: true
                Accessible.role: Accessible.Button
                Accessible.name: qsTr("Use %1").arg(text)
                onClicked: advice.advisor.choose(index)

                background: Rectangle {
                    radius: height / 2
                    color: offer.down ? Theme.pressWash : offer.hovered ? Theme.hoverWash : "transparent"
                    border { width: 1; color: Theme.hairline }

                    FocusRing { isShown: offer.visualFocus; radius: height / 2 }
                }
                contentItem: Text {
                    text: offer.text
                    color: Theme.ink
                    textFormat: Text.PlainText
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    font { family: Theme.uiFamily; pixelSize: Theme.labelSize; weight: Font.Medium }
                }
            }
        }
    }
}
