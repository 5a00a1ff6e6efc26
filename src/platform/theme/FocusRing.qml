import QtQuick
import Tallowby.Platform

/// The ring around the control that has the keyboard.
Rectangle {
    id: ring

    property bool isShown: false

    anchors.fill: parent
    anchors.margins: -4
    color: "transparent"
    border { width: 2; color: Theme.accent }
    visible: isShown
}
