import QtQuick
import QtQuick.Templates as T
import Tallowby.Platform

/// A round button beside the edge of a table.
T.AbstractButton {
    id: handle

    required property string symbol
    /// The point of the edge that it belongs to, and which way is out.
    required property point anchor
    required property point side
    required property real zoomed

    x: anchor.x + side.x * 18 * zoomed - width / 2
    y: anchor.y + side.y * 18 * zoomed - height / 2
    width: 22
    height: 22
    scale: zoomed
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: text

    background: Rectangle {
        radius: height / 2
        color: Theme.surfaceRaised
        border { width: 1; color: handle.hovered ? Theme.accent : Theme.surfaceEdge }
    }
    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            size: 12
            name: handle.symbol
            color: handle.hovered ? Theme.accent : Theme.inkSoft
        }
    }
}
