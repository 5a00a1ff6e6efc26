import QtQuick
import Tallowby.Canvas
import Tallowby.Platform

/// A horizontal rule.
BlockBody {
    Rectangle {
        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
        height: 1.5
        radius: height / 2
        color: Theme.inkSoft
        opacity: 0.5
    }
}
