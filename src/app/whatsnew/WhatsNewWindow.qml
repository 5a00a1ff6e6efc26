pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Tallowby.App
import Tallowby.Platform

ShellWindow {
    id: window

    required property WhatsNewWindowController controller

    title: qsTr("What's New in Tallowby")
    isFloating: true
    ground: Theme.canvas
    width: 520
    height: 640
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height

    TurningScreen {
        id: picture

        x: 72
        y: 24
        width: parent.width - 2 * x
        height: 144
        turn: 0.9
        Accessible.ignored: true
    }

    Text {
        id: heading

        anchors { top: picture.bottom; topMargin: Theme.spaceSmall }
        x: window.outerMargin
        text: qsTr("What's new")
        color: Theme.ink
        font { family: Theme.uiFamily; pixelSize: Theme.displaySize; weight: Font.DemiBold }
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Rectangle {
        anchors { top: heading.bottom; topMargin: Theme.spacePanel; bottom: done.top; bottomMargin: Theme.spaceWindow }
        x: window.outerMargin
        width: parent.width - 2 * x
        radius: Theme.radiusPanel
        color: Theme.surface
        border { width: 1; color: Theme.surfaceEdge }

        ListView {
            anchors { fill: parent; margins: 1 }
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            topMargin: Theme.spacePanel + 4
            bottomMargin: Theme.spacePanel + 4
            spacing: Theme.spaceWindow
            activeFocusOnTab: true
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Versions")
            model: window.controller.releases
            delegate: ReleaseSection {
                required property releaseNotes modelData

                width: ListView.view.width
                notes: modelData
            }
            ScrollBar.vertical: ThinScrollBar {}
        }
    }

    PrimaryButton {
        id: done

        anchors { right: parent.right; rightMargin: window.outerMargin; bottom: parent.bottom; bottomMargin: Theme.spaceWindow }
        text: qsTr("Continue")
        onClicked: window.controller.dismiss()
    }
}
