import QtQuick
import QtQuick.Controls.Basic
import Tallowby.Platform

/// Shows how far something is scrolled, and nothing where all of it is seen.
ScrollBar {
    id: bar

    contentItem: Rectangle {
        implicitWidth: 4
        radius: 2
        color: bar.pressed ? Theme.ink : Theme.inkSoft
        opacity: bar.size < 1 ? 0.5 : 0
    }
}
