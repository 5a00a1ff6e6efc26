import QtQuick
import Tallowby.Platform

/// The raised ground of a control that floats over the canvas. Clicks on it do not reach the canvas.
Rectangle {
    id: pill

    radius: height / 2
    color: Theme.surfaceRaised
    border { width: 1; color: Theme.hairline }

    SoftShadow {
        z: -1
        blur: 16
        drop: 2
        radius: Math.floor(pill.radius)
        strength: Theme.isDark ? 0.4 : 0.1
    }

    MouseArea { anchors.fill: parent }
}
