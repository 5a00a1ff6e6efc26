import QtQuick
import Tallowby.Platform

/// The outline of a selected block, just outside of it, of the same width on screen at any zoom.
Rectangle {
    id: outline

    required property real zoom
    property real lineWidth: 1.5
    readonly property real gap: 4

    x: -gap / zoom
    y: -gap / zoom
    width: parent ? parent.width * zoom + 2 * gap : 0
    height: parent ? parent.height * zoom + 2 * gap : 0
    scale: 1 / zoom
    transformOrigin: Item.TopLeft
    radius: Theme.radiusControl
    color: "transparent"
    border { width: outline.lineWidth; color: Theme.accent; pixelAligned: false }
}
