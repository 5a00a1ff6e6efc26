import QtQuick
import Tallowby.App
import Tallowby.Platform

SyncDotView {
    id: view

    // Left of the way back to the desktop.
    anchors { right: parent.right; rightMargin: Theme.spacePanel + 36 + Theme.spaceTight; top: parent.top; topMargin: Theme.spacePanel + 2 }
    width: Theme.hitSize
    height: Theme.hitSize
    Accessible.role: Accessible.Indicator
    Accessible.name: view.status.summary
    Accessible.description: view.status.detail

    Rectangle {
        anchors.centerIn: parent
        width: 8
        height: 8
        radius: 4
        color: view.status.color

        Behavior on color { ColorAnimation { duration: Theme.motionIn } }
    }

    HoverHandler { id: pointer }

    Tip {
        anchors { right: parent.right; top: parent.bottom; topMargin: Theme.spaceTight }
        text: view.status.detail ? view.status.summary + "  ·  " + view.status.detail : view.status.summary
        isWanted: pointer.hovered
    }
}
