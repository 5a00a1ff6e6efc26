import QtQuick
import Tallowby.Platform

/// A round handle of the selected block.
Rectangle {
    required property point middle
    required property real size

    x: middle.x - width / 2
    y: middle.y - height / 2
    width: size
    height: size
    radius: size / 2
    antialiasing: true
    color: "white"
    border { width: 1.5; color: Theme.accent; pixelAligned: false }
}
