import QtQuick
import Tallowby.Canvas
import Tallowby.Platform

CanvasNoticeView {
    id: notice

    implicitWidth: pill.width
    implicitHeight: pill.height
    opacity: isShown ? 1 : 0
    visible: opacity > 0
    Accessible.role: Accessible.AlertMessage
    Accessible.name: notice.text

    Behavior on opacity {
        NumberAnimation { duration: notice.isShown ? Theme.motionIn : Theme.motionOut; easing.type: Easing.OutQuad }
    }

    FloatingPill {
        id: pill

        width: words.width + 2 * Theme.spacePanel
        height: words.height + 2 * Theme.spaceSmall

        Text {
            id: words

            anchors.centerIn: parent
            width: Math.min(implicitWidth, notice.canvas.width - 8 * Theme.spacePanel)
            color: Theme.ink
            elide: Text.ElideMiddle
            font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
            text: notice.text
            textFormat: Text.PlainText
        }
    }
}
