pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Tallowby.Platform

/// One of a few words, side by side.
Rectangle {
    id: choice

    required property list<string> words
    property int current: 0
    property string name

    signal chosen(int index)

    implicitWidth: segments.implicitWidth + 4
    implicitHeight: 32
    radius: Theme.radiusControl + 2
    color: Theme.hoverWash
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    Row {
        id: segments

        anchors.centerIn: parent

        Repeater {
            model: choice.words

            AbstractButton {
                id: segment

                required property string modelData
                required property int index

                implicitWidth: Math.max(64, implicitContentWidth + 24)
                implicitHeight: 28
                text: modelData
                checked: index === choice.current
                focusPolicy: Qt.TabFocus
                hoverEnabled: true
                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.checked: checked
                onClicked: choice.chosen(index)

                background: Rectangle {
                    radius: Theme.radiusControl
                    color: segment.checked ? Theme.surfaceRaised : segment.hovered ? Theme.hoverWash : "transparent"
                    border { width: segment.checked ? 1 : 0; color: Theme.hairline }

                    FocusRing { isShown: segment.visualFocus; radius: parent.radius; anchors.margins: -2 }
                }
                contentItem: Text {
                    text: segment.text
                    color: segment.checked ? Theme.ink : Theme.inkSoft
                    textFormat: Text.PlainText
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
                }
            }
        }
    }
}
