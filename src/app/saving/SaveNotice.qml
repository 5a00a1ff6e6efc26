import QtQuick
import Tallowby.App
import Tallowby.Platform

SaveNoticeView {
    id: view

    readonly property int edge: Theme.spacePanel

    // Left of the dot that tells of sync, which is left of the way back to the desktop.
    anchors { right: parent.right; rightMargin: edge + 36 + 2 * Theme.spaceTight + Theme.hitSize; top: parent.top; topMargin: edge + 2 }
    width: Math.min(words.implicitWidth + 8 + 4 * Theme.spaceSmall, parent.width - anchors.rightMargin - edge)
    height: words.height + 2 * Theme.spaceTight + 4
    visible: text.length > 0
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
    Accessible.ignored: !visible

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusCard
        color: Theme.surfaceRaised
        border { width: 1; color: Theme.hairline }

        SoftShadow {
            z: -1
            blur: 16
            drop: 2
            radius: Theme.radiusCard
            strength: Theme.isDark ? 0.4 : 0.1
        }
    }

    Rectangle {
        anchors { left: parent.left; leftMargin: Theme.spaceSmall + 2; verticalCenter: parent.verticalCenter }
        width: 8
        height: 8
        radius: 4
        color: Theme.danger
    }

    Text {
        id: words

        anchors { right: parent.right; rightMargin: Theme.spaceSmall + 2; verticalCenter: parent.verticalCenter }
        width: Math.min(implicitWidth, view.parent.width - view.anchors.rightMargin - view.edge - 8 - 4 * Theme.spaceSmall)
        color: Theme.ink
        text: view.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
    }
}
