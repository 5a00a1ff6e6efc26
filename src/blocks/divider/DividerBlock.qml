import QtQuick
import Tallowby.Blocks
import Tallowby.Platform

/// A horizontal rule from end to end.
DividerBlockContent {
    id: content

    // In pixels of the screen: without a graphics processor a rectangle is rounded to whole units of its own.
    Rectangle {
        y: content.ruleTop
        width: content.width * content.pixelsPerPoint
        antialiasing: content.block.rotation !== 0
        height: content.thickness
        scale: 1 / content.pixelsPerPoint
        transformOrigin: Item.TopLeft
        color: Qt.tint(Theme.canvas, Qt.alpha(Theme.inkSoft, 0.5))
    }
}
