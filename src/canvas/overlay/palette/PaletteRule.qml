import QtQuick
import Tallowby.Platform

/// Parts the groups of a palette.
Item {
    implicitWidth: 9
    implicitHeight: Theme.hitSize

    Rectangle {
        anchors.centerIn: parent
        width: 1
        height: 20
        color: Theme.hairline
    }
}
