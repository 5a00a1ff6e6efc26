import QtQuick
import Tallowby.Platform

/// Parts the sections of a toolbar.
Item {
    implicitWidth: 13
    implicitHeight: 28

    Rectangle {
        anchors.centerIn: parent
        width: 1
        height: 16
        color: Theme.hairline
    }
}
