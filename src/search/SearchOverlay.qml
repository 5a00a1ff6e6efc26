pragma ComponentBehavior: Bound

import QtQuick
import Tallowby.Platform
import Tallowby.Search

/// A field in the upper half of the canvas, and below it what is found. A click beside the panel puts it away.
SearchOverlayView {
    id: view

    anchors.fill: parent
    visible: opacity > 0
    enabled: isShown
    opacity: 0
    field: input.input

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        onClicked: view.dismiss()
    }

    Rectangle {
        id: panel

        readonly property int rowHeight: 52
        readonly property int shownRows: Math.min(view.results.count, Math.max(1, Math.floor((view.height - y - 180) / rowHeight)), 8)
        property real rise: view.reducesMotion ? 0 : -12

        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.min(96, view.height / 8) + rise
        width: Math.min(560, view.width - 2 * Theme.spacePanel)
        height: input.height + (rows.visible ? rows.height + 2 * Theme.spaceSmall + 1 : notice.visible ? notice.height + 1 : 0)
        radius: Theme.radiusPanel
        color: Theme.surfaceRaised
        border { width: 1; color: Theme.hairline }
        Accessible.role: Accessible.Dialog
        Accessible.name: qsTr("Search")

        SoftShadow {
            z: -1
            blur: 32
            drop: 8
            radius: Theme.radiusPanel
            strength: Theme.isDark ? 0.5 : 0.16
        }

        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
            onWheel: (wheel) => wheel.accepted = true
        }

        SearchField {
            id: input

            width: parent.width
            height: 52
            overlay: view
        }

        Rectangle {
            id: rule

            y: input.height
            x: 1
            width: parent.width - 2
            height: 1
            color: Theme.hairline
            visible: rows.visible || notice.visible
        }

        ListView {
            id: rows

            x: Theme.spaceSmall
            y: rule.y + 1 + Theme.spaceSmall
            width: parent.width - 2 * x
            height: panel.rowHeight * panel.shownRows
            visible: count > 0
            clip: true
            model: view.results
            currentIndex: view.currentIndex
            highlightMoveDuration: 0
            highlightResizeDuration: 0
            boundsBehavior: Flickable.StopAtBounds
            reuseItems: true
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Results")
            delegate: SearchResultRow {
                width: rows.width
                height: panel.rowHeight
                isCurrent: ListView.isCurrentItem
                onChosen: view.choose(index)
                onPointed: view.currentIndex = index
            }
        }

        Text {
            id: notice

            y: rule.y + 1
            width: parent.width
            height: 48
            visible: !rows.visible && view.notice
            color: view.hasFailed ? Theme.danger : Theme.inkSoft
            font { family: Theme.uiFamily; pixelSize: Theme.bodySize }
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            text: view.notice
            textFormat: Text.PlainText
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }

    states: State {
        name: "shown"
        when: view.isShown

        PropertyChanges {
            view.opacity: 1
            panel.rise: 0
        }
    }
    transitions: [
        Transition {
            to: "shown"
            NumberAnimation { target: view; property: "opacity"; duration: Theme.motionIn; easing.type: Easing.OutQuad }
            NumberAnimation { target: panel; property: "rise"; duration: Theme.searchSpringDuration; easing: Theme.searchSpring }
        },
        Transition {
            from: "shown"
            NumberAnimation { target: view; property: "opacity"; duration: Theme.motionOut; easing.type: Easing.OutQuad }
        }
    ]
}
