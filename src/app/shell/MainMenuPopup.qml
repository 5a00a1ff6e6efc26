pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Tallowby.App
import Tallowby.Platform

/// The menu of a window: the program's items, then those of editing.
Menu {
    id: popup

    required property MainMenu menu

    padding: 5
    implicitWidth: 220
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.motionIn; easing.type: Easing.OutQuad }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: Theme.motionOut; easing.type: Easing.OutQuad }
    }
    background: Rectangle {
        radius: Theme.radiusCard
        color: Theme.surfaceRaised
        border { width: 1; color: Theme.surfaceEdge }

        SoftShadow {
            z: -1
            blur: 32
            drop: 8
            radius: Theme.radiusCard
            strength: Theme.isDark ? 0.5 : 0.16
        }
    }

    Repeater {
        model: popup.menu.applicationItems

        MainMenuRow {
            required property mainMenuItem modelData
            required property int index

            text: modelData.title
            keys: modelData.keys
            startsGroup: modelData.startsGroup
            onTriggered: popup.menu.chooseApplicationItem(index)
        }
    }

    Repeater {
        model: popup.menu.editItems

        MainMenuRow {
            required property mainMenuItem modelData
            required property int index

            text: modelData.title
            keys: modelData.keys
            startsGroup: modelData.startsGroup || index === 0
            onTriggered: popup.menu.chooseEditItem(index)
        }
    }
}
