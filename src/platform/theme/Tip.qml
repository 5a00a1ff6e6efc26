import QtQuick
import Tallowby.Platform

/// A line of help beside a control; comes after a pause and goes at once.
Rectangle {
    id: tip

    required property string text
    property bool isWanted: false

    width: words.implicitWidth + 2 * Theme.spaceSmall
    height: words.implicitHeight + 2 * Theme.spaceTight
    radius: Theme.radiusControl
    color: Theme.ink
    opacity: 0
    visible: opacity > 0

    Text {
        id: words

        anchors.centerIn: parent
        color: Theme.canvas
        font.family: Theme.uiFamily
        font.pixelSize: Theme.labelSize
        text: tip.text
        textFormat: Text.PlainText
    }

    states: State {
        when: tip.isWanted
        PropertyChanges { tip.opacity: 1 }
    }
    transitions: [
        Transition {
            to: ""
            NumberAnimation { property: "opacity"; duration: Theme.motionOut; easing.type: Easing.OutQuad }
        },
        Transition {
            from: ""
            SequentialAnimation {
                PauseAnimation { duration: Theme.tipDelay }
                NumberAnimation { property: "opacity"; duration: Theme.motionIn; easing.type: Easing.OutQuad }
            }
        }
    ]
}
