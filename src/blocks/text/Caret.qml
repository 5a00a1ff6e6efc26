import QtQuick
import Tallowby.Platform

/// The text caret. It blinks for some seconds after each move and then stays, so that nothing moves at rest.
Rectangle {
    id: caret

    property bool isShown: false
    readonly property bool isBlinking: isShown && Theme.caretInterval > 0 && Window.visibility !== Window.Hidden

    width: 2
    radius: 1
    color: Theme.accent
    visible: isShown
    onXChanged: blink.restart()
    onYChanged: blink.restart()

    SequentialAnimation {
        id: blink

        running: caret.isBlinking
        loops: caret.isBlinking ? 8 : 0
        onStopped: caret.opacity = 1

        PropertyAction { target: caret; property: "opacity"; value: 1 }
        PauseAnimation { duration: Theme.caretInterval }
        PropertyAction { target: caret; property: "opacity"; value: 0 }
        PauseAnimation { duration: Theme.caretInterval }
    }
}
